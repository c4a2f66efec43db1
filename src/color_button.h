// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

struct Color;

/// A small square in a key's colour. A click lets the user choose another, which is written into
/// the record; no signal tells of it, as whoever paints reads the record each time.
class ColorButton : public QPushButton
{
    Q_OBJECT

public:
    static constexpr int fSize = 16; ///< edge of button and picture, px

    /// `color` is not owned and must outlive the button.
    ColorButton(Color& color, QWidget* parent);

public slots:
    /// Asks the user for a colour, modally. Cancelled: nothing changes. Nor is anybody asked while
    /// another modal window than the button's own is open, such as another chooser.
    void xOnClick();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void xShowColor();

    Color& fColor;
};
