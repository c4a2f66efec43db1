#pragma once

/// The module that holds a robot's memory, and the methods it answers.
namespace memory_methods {
constexpr char moduleName[] = "ZoMemory";
constexpr char getListData[] = "getListData";         ///< array of arrays [key, 0]
constexpr char getDataListName[] = "getDataListName"; ///< nothing
constexpr char setData[] = "setData";                 ///< array [key, value]
constexpr char setListData[] = "setListData";         ///< array of arrays [key, value]
constexpr char setText[] = "setText";                 ///< array [key, text]
} // namespace memory_methods
