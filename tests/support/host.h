// SPDX-License-Identifier: MIT
#pragma once

#include "support/modal_driver.h"

#include "application.h"

#include <QDialog>
#include <QMessageBox>
#include <QString>

#include <functional>

/// Words for tests that run the host's windows.

/// The boxes on screen.
QList<QMessageBox*> shownBoxes();

/// The first of them; null when there is none.
QMessageBox* shownBox();

/// Runs `action` once the modal dialog of this name is in front: that dialog, and the function that
/// opened it, are at work meanwhile. Set up before it opens. A dialog that does not come, or stays
/// for too long, fails the test function.
void whenShown(const QString& name, const std::function<void(QDialog&)>& action);

/// Clicks the box's Ok button; the box is gone when it returns.
void clickOk(QMessageBox* box);

/// The host's own application object, with a settings file of its own, which lasts as long as the
/// program.
class HostApplication : public Application
{
public:
    HostApplication(int& argc, char** argv);
};
