// SPDX-License-Identifier: MIT
#include "cell_delegate.h"

QString CellDelegate::displayText(const QVariant& value, const QLocale& locale) const
{
    return QStyledItemDelegate::displayText(value, locale).replace(QChar::LineSeparator, ' ');
}
