// SPDX-License-Identifier: MIT
#pragma once

#include <zo/address.h>

#include <QString>

#include <vector>

// Addresses as a user types them: one, or several with commas between, and blanks around these.

/// All of them; `port` is that of those which name none. Throws what ZoAddress::listFromText does.
std::vector<ZoAddress> typedAddresses(const QString& text, int port);

/// The port of the first, if each names one; otherwise 0.
int typedPort(const QString& text);
