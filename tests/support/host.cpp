// SPDX-License-Identifier: MIT
#include "support/host.h"

#include "support/guarded_test.h"

#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

namespace {

template <typename Dialog>
Dialog* shown(const QString& name)
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* dialog = qobject_cast<Dialog*>(widget);
        if (dialog && dialog->isVisible() &&
            (name.isEmpty() || dialog->objectName() == name ||
             dialog->metaObject()->className() == name))
            return dialog;
    }
    return nullptr;
}

} // namespace

QMessageBox* shownBox()
{
    return shown<QMessageBox>({});
}

QDialog* shownDialog(const QString& name)
{
    return shown<QDialog>(name);
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
