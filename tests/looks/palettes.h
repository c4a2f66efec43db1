// SPDX-License-Identifier: MIT
#pragma once

#include <QPalette>
#include <QString>

/// What desktops offer besides the toolkit's own colours.

inline QPalette paletteOf(const QColor& window, const QColor& base, const QColor& text,
                          const QColor& button, const QColor& disabled)
{
    QPalette palette(text, button, button.lighter(130), button.darker(160), button.darker(120),
                     text, text, base, window);
    palette.setColor(QPalette::ToolTipBase, button);
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::PlaceholderText, disabled);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, disabled);
    return palette;
}

inline QPalette darkPalette()
{
    QPalette palette = paletteOf("#232629", "#1b1e20", "#eff0f1", "#31363b", "#7f8c8d");
    palette.setColor(QPalette::Highlight, "#1d6fa5");
    palette.setColor(QPalette::HighlightedText, "#ffffff");
    palette.setColor(QPalette::Link, "#3daee9");
    return palette;
}

inline QPalette highContrastPalette()
{
    QPalette palette = paletteOf("#000000", "#000000", "#ffffff", "#000000", "#00ff00");
    palette.setColor(QPalette::Highlight, "#ffff00");
    palette.setColor(QPalette::HighlightedText, "#000000");
    palette.setColor(QPalette::Link, "#ffff00");
    return palette;
}
