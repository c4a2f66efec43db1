// SPDX-License-Identifier: MIT
#pragma once

/// While one of these lives, every `new T[n]` of the process, also within libraries that were
/// built without checks, ends just before a page that nobody may touch. Reading one byte past the
/// end then stops the program. One at a time, one thread.
class GuardedArrays
{
public:
    GuardedArrays();
    ~GuardedArrays();
    GuardedArrays(const GuardedArrays&) = delete;
    GuardedArrays& operator=(const GuardedArrays&) = delete;
};
