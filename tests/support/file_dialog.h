// SPDX-License-Identifier: MIT
#pragma once

#include "support/modal_driver.h"
#include "support/panel.h"

#include <QFileDialog>
#include <QStringList>

/// What a user reads in the file dialog behind a button: title, filters, folder.
inline QStringList fileDialogOf(const Panel& panel, const QString& toolTip)
{
    QStringList read;
    const ModalDriver driver([&](QWidget& dialog) {
        if (const auto* files = qobject_cast<QFileDialog*>(&dialog))
            read << files->windowTitle() << files->nameFilters()
                 << files->directory().absolutePath();
        cancelDialog(dialog);
    });
    QTest::mouseClick(panel.button(toolTip), Qt::LeftButton);
    return read;
}
