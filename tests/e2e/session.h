// SPDX-License-Identifier: MIT
#pragma once

#include "desktop.h"
#include "dialogs/error_reporter.h"
#include "robot_program.h"

#include <QDialog>
#include <QTreeWidget>

class TarvekWidget;

/// A user at the desktop: the windows of this process, with the real plug-in.
class Session
{
public:
    Session();

    /// A new window for the robot; null when there is no connection.
    MainWindow* connectTo(const RobotProgram& robot,
                          const ZoBrokerOptions& options = patientOptions());
    MainWindow* connectTo(const QString& address, const std::string& password = {},
                          const ZoBrokerOptions& options = patientOptions());

    /// Opens the panel in the way of the start-up dialog's button with this text. `thenDo` acts
    /// on the dialog that the button opens; it may be empty when there is none. Null when no
    /// panel came.
    TarvekWidget* open(MainWindow* window, const QString& way, const QString& nextDialog = {},
                       const std::function<void(QDialog&)>& thenDo = {});

    const QList<MainWindow*>& windows() const { return fDesktop.windows(); }
    Desktop& desktop() { return fDesktop; }

    static constexpr char fNewFile[] = "New configuration file";
    static constexpr char fOpenFile[] = "Open configuration file";
    static constexpr char fAllKeys[] = "Do not use a config file (slow)";

private:
    ErrorReporter fErrors;
    Desktop fDesktop;
};

void clickButton(QWidget& window, const QString& textOrToolTip);

/// The panel's table; its row with this alias, null when there is none.
QTreeWidget* tableOf(TarvekWidget* panel);
QTreeWidgetItem* rowOf(TarvekWidget* panel, const QString& alias);

/// Clicks the check box of a row.
void clickBox(TarvekWidget* panel, const QString& alias, int column);

/// The panel's part of this class.
QWidget* partOf(TarvekWidget* panel, const char* className);
