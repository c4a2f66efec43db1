// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The name of the root element of the XML in `file`; empty when there is none near its beginning,
/// or it cannot be read.
QString rootElementOf(const QString& file);
