// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// `text` for a tool tip, which would take it for HTML when it looks so: texts come from robots.
inline QString plainToolTip(const QString& text)
{
    // As HTML in any case: escaped only, it would be shown so where nothing else looks like HTML.
    return text.isEmpty() ? QString()
                          : "<p style=\"white-space: pre-wrap\">" + text.toHtmlEscaped() + "</p>";
}
