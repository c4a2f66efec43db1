// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_state.h"

/// What a window says about its connection. `address` is the robot's, `now` the present time.
/// In a few words: "Connected since 12:03:02".
QString connectionBrief(const ConnectionState& state, const QDateTime& now);
/// In a sentence, for one line: where, or why not and what is done about it.
QString connectionDetail(const ConnectionState& state, const QString& address);

/// What a title of a window begins with: "Interrupted: ". Empty while connected.
QString connectionTitlePrefix(const ConnectionState& state);

/// For a bar that is there while something is amiss: who, and since when; then what that means,
/// what is being done and what the user can do; then why. Empty where there is nothing to say.
QString connectionHeadline(const ConnectionState& state, const QString& address,
                           const QDateTime& now);
QString connectionAdvice(const ConnectionState& state);
QString connectionReason(const ConnectionState& state);
