// SPDX-License-Identifier: MIT
#pragma once

/// Ticks fall due at 0, 1/rate, 2/rate, ... seconds after a start, so that no error adds up.

/// When `tick` falls due, in seconds after the start.
double tickTime(long long tick, double rate);

/// The tick to do after `last`, `elapsed` seconds after the start: the next one, or, when later
/// ones are due already, the latest of these. The ones between are skipped.
long long nextTick(long long last, double elapsed, double rate);
