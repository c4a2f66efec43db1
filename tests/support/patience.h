// SPDX-License-Identifier: MIT
#pragma once

/// How long a test waits for what is sure to come, on a machine however busy.
constexpr int patience = 30000; ///< ms

/// The test framework's own waits, with that patience in place of five seconds.
#define TRY_VERIFY(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, patience)
#define TRY_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, patience)
