// SPDX-License-Identifier: MIT
#pragma once

#include "recording/recording.h"
#include "recording/recording_bar.h"
#include "recording/recordings.h"
#include "support/files.h"
#include "support/host.h"
#include "support/window_bench.h"

#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QtTest>

/// What tests of recordings in a window share: a window of a real server, the real recorder, and
/// words for what its user does.
class RecordingsBench : protected WindowBench
{
protected:
    void setUp()
    {
        fFolder.reset(new QTemporaryDir);
        qputenv("PATH", QFile::encodeName(fFolder->path()) + ':' +
                            QFile::encodeName(QFileInfo(RECORDER).path()) + ':' + fPathBefore);
        WindowBench::setUp();
        useRobot({}, {});
    }
    void tearDown()
    {
        for (QMessageBox* box : shownBoxes())
            delete box;
        WindowBench::tearDown();
        qputenv("PATH", fPathBefore);
    }

    /// In place of the real one.
    void writeRecorder(const QByteArray& script)
    {
        QFile file(path("zo-record"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("#!/bin/sh\n" + script + '\n') > 0);
        QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }
    /// As a user does it.
    void record(const QString& file, const QString& keys = "a")
    {
        action("Record...")->trigger();
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog && dialog->inherits("RecordingDialog"));
        dialog->findChild<QRadioButton*>("byKeys")->click();
        dialog->findChild<QPlainTextEdit*>("keys")->setPlainText(keys);
        dialog->findChild<QSpinBox*>("period")->setValue(50);
        dialog->findChild<QLineEdit*>("file")->setText(file);
        QTest::mouseClick(dialog->findChild<QPushButton*>("record"), Qt::LeftButton);
    }
    RecordingPlan planOfAll() const
    {
        RecordingPlan plan;
        plan.what = RecordingPlan::What::All;
        plan.output = path();
        return plan;
    }

    QString path(const QString& name = "a.csv") const { return fFolder->filePath(name); }
    QStringList lines(const QString& name = "a.csv") const
    {
        return QString::fromUtf8(bytesOf(path(name))).split("\r\n", Qt::SkipEmptyParts);
    }
    QList<RecordingRow*> rows() const { return fWindow->findChildren<RecordingRow*>(); }
    bool hasNone() const { return rows().isEmpty(); }
    QString rowText() const
    {
        return hasNone() ? QString() : rows()[0]->findChild<QLabel*>("recordingText")->text();
    }
    QString boxText() const { return shownBox() ? shownBox()->text() : QString(); }
    QString noteText() const { return fWindow->findChild<QLabel*>("connectionDetail")->text(); }
    void stop() const
    {
        QTest::mouseClick(rows()[0]->findChild<QPushButton*>("recordingStop"), Qt::LeftButton);
    }
    void answer(const QString& button) const
    {
        QMessageBox* box = shownBox();
        QVERIFY(box);
        for (QAbstractButton* each : box->buttons())
            if (each->text().remove('&') == button)
                QTest::mouseClick(each, Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void useRobot(const RedisServer::Options& options, const ConnectionSettings& settings)
    {
        fRobot.reset(new RedisServer(options));
        fRobot->command({"MSET", "a", "0.5", "b", "walking"});
        ConnectionSettings full = settings;
        full.timeout = 20000; // which a slow machine keeps
        full.address.port = fRobot->port();
        if (full.tls)
            full.caFile = QString::fromStdString(fRobot->caFile());
        fWindow.reset();
        fWindow.reset(new MainWindow(
            {*fPlugins, *fErrors, "/some/where/"}, full,
            ZoBroker::create("test", full.address.host, full.address.port, full.brokerOptions())));
        fWindow->show();
    }

    const QByteArray fPathBefore = qgetenv("PATH");
    QScopedPointer<QTemporaryDir> fFolder;
};
