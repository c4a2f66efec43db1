// SPDX-License-Identifier: MIT
#include "support/host.h"

#include "support/guarded_test.h"

#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

QList<QMessageBox*> shownBoxes()
{
    QList<QMessageBox*> found;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* box = qobject_cast<QMessageBox*>(widget);
        if (box && box->isVisible())
            found += box;
    }
    return found;
}

QMessageBox* shownBox()
{
    return shownBoxes().value(0);
}

void whenShown(const QString& name, const std::function<void(QDialog&)>& action)
{
    auto user = std::make_unique<ModalDriver>();
    user->then(name, action);
    GuardedTest::keepUntilEnd(std::move(user));
}

void clickOk(QMessageBox* box)
{
    QTest::mouseClick(static_cast<QWidget*>(box->button(QMessageBox::Ok)), Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

HostApplication::HostApplication(int& argc, char** argv) : Application((prepare(), argc), argv)
{
    static const QTemporaryDir folder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
}
