// SPDX-License-Identifier: MIT
#pragma once

constexpr int standardOutput = 1;

/// To be called first: a write into a closed pipe becomes an error, not the end of the process,
/// and no connection can get the number of a standard stream that the caller left closed.
void prepareProcess();

/// From now on SIGINT and SIGTERM end the process at once with exit status 0, whatever it waits
/// for; what is not yet written is not wanted any more.
void endWellOnStopSignals();
