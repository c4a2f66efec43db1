// SPDX-License-Identifier: MIT
#include "session.h"

#include "support/host.h"
#include "support/patience.h"

#include <tarvek/tarvek_widget.h>

#include <QAbstractButton>
#include <QtTest>

namespace {

CommandLine commandLine()
{
    CommandLine line;
    line.pluginFiles = QStringList(GLIMMET_PLUGIN);
    line.imageDir = GLIMMET_IMAGES;
    return line;
}

} // namespace

Session::Session() : fDesktop(commandLine(), fErrors) {}

MainWindow* Session::connectTo(const RobotProgram& robot, const ZoBrokerOptions& options)
{
    return connectTo(robot.address(), robot.password(), options);
}

MainWindow* Session::connectTo(const QString& address, const std::string& password,
                               const ZoBrokerOptions& options)
{
    const auto before = windows().size();
    ConnectionSettings settings;
    settings.follow = options.follow;
    settings.prefix = QString::fromStdString(options.prefix);
    settings.address = ZoAddress::fromText(address.toStdString());
    settings.password = password;
    settings.other = options;
    fDesktop.connectTo(settings);
    const bool hasOpened = QTest::qWaitFor([&] { return windows().size() > before; }, patience);
    if (!hasOpened || !QTest::qWaitForWindowExposed(windows().last(), patience))
        return nullptr;
    return windows().last();
}

TarvekWidget* Session::open(MainWindow* window, const QString& way, const QString& nextDialog,
                            const std::function<void(QDialog&)>& thenDo)
{
    whenShown("ConfigDialog", [way, nextDialog, thenDo](QDialog& dialog) {
        if (thenDo)
            whenShown(nextDialog, thenDo);
        clickButton(dialog, way);
    });
    window->openPanel(fDesktop.plugins().find("Glimmet"));
    const auto panels = window->findChildren<TarvekWidget*>();
    return panels.isEmpty() ? nullptr : panels.last();
}

void clickButton(QWidget& window, const QString& textOrToolTip)
{
    for (auto* button : window.findChildren<QAbstractButton*>()) {
        if (button->text() == textOrToolTip || button->toolTip() == textOrToolTip) {
            QTest::mouseClick(static_cast<QWidget*>(button), Qt::LeftButton);
            return;
        }
    }
    QFAIL(qPrintable("no button " + textOrToolTip));
}

QTreeWidget* tableOf(TarvekWidget* panel)
{
    return panel->findChild<QTreeWidget*>();
}

QTreeWidgetItem* rowOf(TarvekWidget* panel, const QString& alias)
{
    const auto found = tableOf(panel)->findItems(alias, Qt::MatchExactly);
    return found.isEmpty() ? nullptr : found.first();
}

void clickBox(TarvekWidget* panel, const QString& alias, int column)
{
    QTreeWidget* table = tableOf(panel);
    QTreeWidgetItem* row = rowOf(panel, alias);
    QVERIFY2(row, qPrintable(alias));
    table->scrollToItem(row);
    const QModelIndex index = table->indexAt(table->visualItemRect(row).center());
    table->scrollTo(index.sibling(index.row(), column));
    const QRect shown = table->visualRect(index.sibling(index.row(), column));
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                      QPoint(shown.left() + 10, shown.center().y()));
}

QWidget* partOf(TarvekWidget* panel, const char* className)
{
    for (QWidget* part : panel->findChildren<QWidget*>())
        if (part->metaObject()->className() == QByteArray(className))
            return part;
    return nullptr;
}
