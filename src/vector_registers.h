// SPDX-License-Identifier: MIT
#pragma once

#if defined(__x86_64__) && defined(__GNUC__)

#include <immintrin.h>

__attribute__((target("avx"))) inline void clearUpperHalves()
{
    _mm256_zeroupper();
}

/// Tells the processor that the upper halves of its vector registers hold nothing. Painting may
/// leave them in use; then each floating-point instruction waits for the last one that wrote
/// its register, and a loop over many samples takes three times as long.
inline void releaseUpperHalves()
{
    if (__builtin_cpu_supports("avx"))
        clearUpperHalves();
}

#else

inline void releaseUpperHalves() {}

#endif
