// SPDX-License-Identifier: MIT
#pragma once

#include "support/modal_driver.h"

#include <QLineEdit>
#include <QtTest>

#include <functional>

/// Does with the next modal dialog what a user would. Dialogs run their own event loops, so this
/// is set up before the dialog is asked for.
class DialogDriver
{
public:
    using Action = std::function<void(QWidget& dialog)>;

    explicit DialogDriver(const Action& action, int deadline = ModalDriver::fPatience)
        : fUser(deadline)
    {
        fUser.then<QWidget>(action);
    }

    bool wasShown() const { return fUser.isDone(); }

private:
    ModalDriver fUser;
};

inline void cancelDialog(QWidget& dialog)
{
    QTest::keyClick(&dialog, Qt::Key_Escape);
}

inline void acceptDialog(QWidget& dialog)
{
    QTest::keyClick(&dialog, Qt::Key_Return);
}

/// Types a path into a file dialog and confirms it.
inline void chooseFile(QWidget& dialog, const QString& path)
{
    auto* edit = dialog.findChild<QLineEdit*>("fileNameEdit");
    QVERIFY(edit);
    edit->clear();
    QTest::keyClicks(edit, path);
    QTest::keyClick(edit, Qt::Key_Return);
}
