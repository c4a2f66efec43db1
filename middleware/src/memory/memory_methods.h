// SPDX-License-Identifier: MIT
#pragma once

namespace zo {

/// The module that holds a robot's memory, and the methods it answers.
constexpr char memoryModuleName[] = "ZoMemory";
constexpr char getListDataMethod[] = "getListData"; ///< array of arrays [key, 0]
/// The same; returns an array [values, when they came in ns of the steady clock, how many are left
/// out because of their size].
constexpr char getListAnswerMethod[] = "getListAnswer";
constexpr char getDataListNameMethod[] = "getDataListName"; ///< nothing, or how their names end
constexpr char setDataMethod[] = "setData";                 ///< array [key, value]
/// The same; returns the value that was there before.
constexpr char exchangeDataMethod[] = "exchangeData";
constexpr char setListDataMethod[] = "setListData"; ///< array of arrays [key, value]
constexpr char setTextMethod[] = "setText";         ///< array [key, text]

} // namespace zo
