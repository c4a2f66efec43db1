// SPDX-License-Identifier: MIT
#pragma once

#include <zo/link_status.h>

#include <QString>

/// What goes over a link, in a few words and the locale's numbers: "12 ms, 10 answers/s, changes
/// only". Empty when it is down.
QString trafficBrief(const ZoLinkStatus& link);
/// The same in full, one line for each.
QString trafficDetail(const ZoLinkStatus& link);
