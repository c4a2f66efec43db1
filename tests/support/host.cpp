#include "support/host.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
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

void whenShown(const QString& objectName, const std::function<void(QDialog&)>& action)
{
    auto* waiter = new QTimer(qApp);
    QObject::connect(waiter, &QTimer::timeout, waiter, [waiter, objectName, action] {
        QDialog* dialog = shownDialog(objectName);
        if (!dialog)
            return;
        // The timer does not fire again while it is at work, so it does nothing but hand on.
        waiter->stop();
        waiter->deleteLater();
        QTimer::singleShot(0, dialog, [dialog, action] { action(*dialog); });
    });
    waiter->start(5);
}

void clickOk(QMessageBox* box)
{
    QTest::mouseClick(static_cast<QWidget*>(box->button(QMessageBox::Ok)), Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void chooseFile(QFileDialog& dialog, const QString& file)
{
    auto* edit = dialog.findChild<QLineEdit*>("fileNameEdit");
    edit->setFocus();
    edit->clear();
    QTest::keyClicks(edit, file);
    QTest::keyClick(edit, Qt::Key_Return);
}

void useOwnSettings()
{
    static const QTemporaryDir folder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
}
