// SPDX-License-Identifier: MIT
#pragma once

#include "support/fake_memory.h"
#include "support/modal_driver.h"

#include "config_dialog.h"
#include "model.h"
#include "module.h"
#include "stmlist_dialog.h"

#include <boost/make_shared.hpp>

#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QtTest>

#include <memory>
#include <string>
#include <vector>

inline const QString newText = "New configuration file";
inline const QString openText = "Open configuration file";
inline const QString allText = "Do not use a config file (slow)";

/// The start-up dialog over a robot with some keys, and a user who answers what it opens.
struct StartBench
{
    StartBench() : module(boost::make_shared<Module>(memory.proxy()))
    {
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        memory.answer = [this](const ZoValue&) { return ZoValue(keys); };
    }

    int run()
    {
        ConfigDialog dialog(module, "", nullptr);
        return dialog.exec();
    }

    /// Runs the dialog as the child of a window that may be deleted meanwhile.
    int runInWindow() { return (new ConfigDialog(module, "", window.get()))->exec(); }

    /// Deletes that window once a dialog of this kind is in front.
    template <class Dialog>
    void closeTheWindowBehind()
    {
        user.then<Dialog>([this](Dialog&) { window.reset(); });
    }

    void press(const QString& text)
    {
        user.then<ConfigDialog>([text](ConfigDialog& dialog) {
            QTest::mouseClick(buttonOf(dialog, text), Qt::LeftButton);
        });
    }

    void answerFileDialog(const QString& name)
    {
        user.then<QFileDialog>([name](QFileDialog& dialog) {
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText(name);
            QTest::keyClick(dialog.findChild<QLineEdit*>("fileNameEdit"), Qt::Key_Return);
        });
    }

    template <class Dialog>
    void giveUp()
    {
        user.then<Dialog>([](Dialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    }

    void choose(const QStringList& names)
    {
        user.then<StmListDialog>([names](StmListDialog& dialog) {
            auto* list = dialog.findChild<QListWidget*>();
            for (const QString& name : names)
                list->findItems(name, Qt::MatchExactly).value(0)->setCheckState(Qt::Checked);
            QTest::mouseClick(buttonOf(dialog, "Ok"), Qt::LeftButton);
        });
    }

    void readWarning()
    {
        user.then<QMessageBox>([this](QMessageBox& box) {
            warningTitle = box.windowTitle();
            warningText = box.text();
            warningButtons = box.standardButtons();
            QTest::keyClick(&box, Qt::Key_Return);
        });
    }

    const std::vector<boost::shared_ptr<STMVal>>& values() const
    {
        return module->fModel->fSTMVals;
    }

    std::vector<std::string> keys = {"Leg/Knee", "Arm/Elbow", "Device/Raw"};
    FakeMemory memory;
    boost::shared_ptr<Module> module;
    std::unique_ptr<QWidget> window = std::make_unique<QWidget>();
    ModalDriver user;
    QString warningTitle;
    QString warningText;
    QMessageBox::StandardButtons warningButtons;
};
