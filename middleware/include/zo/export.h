// SPDX-License-Identifier: MIT
#pragma once

/// Marks what the shared library `zo` offers; everything else in it stays hidden.
#ifdef ZO_BUILDING_LIBRARY
#define ZO_EXPORT __attribute__((visibility("default")))
#else
#define ZO_EXPORT
#endif
