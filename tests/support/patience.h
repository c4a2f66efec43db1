// SPDX-License-Identifier: MIT
#pragma once

/// How long a test waits for what is sure to come, on a machine however busy.
constexpr int patience = 30000; ///< ms
