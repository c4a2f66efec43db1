// SPDX-License-Identifier: MIT
#pragma once

#include "dialogs/connect_dialog.h"
#include "support/patience.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedPointer>
#include <QSettings>
#include <QSignalSpy>
#include <QtTest>

Q_DECLARE_METATYPE(ConnectionSettings)

/// What tests of the connect dialog share: one that is shown, and words for what its user does.
class ConnectDialogBench
{
protected:
    void setUp()
    {
        qRegisterMetaType<ConnectionSettings>();
        QSettings().clear();
        open();
    }
    void tearDown() { fDialog.reset(); }

    void open(const QList<ConnectionSettings>& recent = {}, const ConnectionSettings& settings = {})
    {
        fDialog.reset(new ConnectDialog(recent, settings));
        fDialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(fDialog.data(), patience));
        fRequests.reset(new QSignalSpy(fDialog.data(), &ConnectDialog::connectRequested));
    }

    QPushButton* connectButton() const
    {
        for (QPushButton* button : fDialog->findChildren<QPushButton*>())
            if (button->isDefault())
                return button;
        return nullptr;
    }
    ConnectionSettings asked() const
    {
        return fRequests->isEmpty() ? ConnectionSettings()
                                    : fRequests->last().at(0).value<ConnectionSettings>();
    }

    template <typename Widget>
    Widget* field(const char* name) const
    {
        return fDialog->findChild<Widget*>(name);
    }
    /// In place of what stands there.
    void type(const char* name, const QString& text)
    {
        auto* widget = field<QWidget>(name);
        if (auto* box = qobject_cast<QComboBox*>(widget))
            widget = box->lineEdit();
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(widget, text);
    }

    static ConnectionSettings robotAt(const std::string& host, int port)
    {
        ConnectionSettings settings;
        settings.address = {host, port};
        return settings;
    }

    QScopedPointer<ConnectDialog> fDialog;
    QScopedPointer<QSignalSpy> fRequests;
};
