// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <thread>

namespace zo {

/// A thread that gets none of the process's signals: those are for the program's own threads.
/// Throws ZoError when the system allows no more threads.
std::thread startQuietThread(std::function<void()> work);

} // namespace zo
