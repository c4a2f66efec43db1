// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

/// Draws and measures every text as one line: a robot may send a thousand of them.
class CellDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant& value, const QLocale& locale) const override;
};
