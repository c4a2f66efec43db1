// SPDX-License-Identifier: MIT
#include "connection/elided_label.h"

#include "connection/plain_tool_tip.h"

#include <QPainter>
#include <QStyle>

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void ElidedLabel::showText(const QString& text)
{
    setText(text);
    setToolTip(plainToolTip(text));
}

QString ElidedLabel::shownText() const
{
    return fontMetrics().elidedText(text().simplified(), Qt::ElideRight, contentsRect().width());
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const int flags =
        int(QStyle::visualAlignment(layoutDirection(), alignment())) | Qt::TextSingleLine;
    style()->drawItemText(&painter, contentsRect(), flags, palette(), isEnabled(), shownText(),
                          foregroundRole());
}
