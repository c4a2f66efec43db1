// SPDX-License-Identifier: MIT
#pragma once

namespace kit {

/// A robot that shares its server writes here, about once a second, how many seconds it is since
/// 1970 by its clock: so it is known to be there.
constexpr char aliveKey[] = "Robot/Alive";

} // namespace kit
