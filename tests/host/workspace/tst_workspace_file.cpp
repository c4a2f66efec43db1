// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"
#include "workspace/workspace_file.h"

#include <zo/error.h>

#include <QtTest>

#include <sys/stat.h>

/// Workspaces in files.
class TestWorkspaceFile : public GuardedTest
{
    Q_OBJECT

private slots:
    void init() { fFolder.reset(new QTemporaryDir); }
    void whatWasWrittenIsRead();
    void aFileThatCannotBeReadIsNamed_data();
    void aFileThatCannotBeReadIsNamed();
    void aPipeHoldsUpNobody();
    void aNewersWorkIsNotReplaced();
    void whatIsTooLargeIsNotWritten();

private:
    QString path(const QString& name = "w.tarvek") const { return fFolder->filePath(name); }
    static Workspace example();
    /// What reading it complains of; empty when it does not.
    static QString complaint(const QString& file);

    QScopedPointer<QTemporaryDir> fFolder;
};

Workspace TestWorkspaceFile::example()
{
    WorkspaceWindow window;
    window.robot.address = ZoAddress::fromText("10.0.0.7");
    return {{window}, {}};
}

QString TestWorkspaceFile::complaint(const QString& file)
{
    try {
        readWorkspace(file);
        return {};
    } catch (const ZoError& error) {
        return QString::fromUtf8(error.what());
    }
}

void TestWorkspaceFile::whatWasWrittenIsRead()
{
    QCOMPARE(writeWorkspace(example(), path()), QString());
    QCOMPARE(readWorkspace(path()).windows.at(0).robot.addressText(), QString("10.0.0.7:6379"));
}

void TestWorkspaceFile::aFileThatCannotBeReadIsNamed_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("cause");
    QTest::newRow("text") << QByteArray("hello") << "no JSON";
    QTest::newRow("large") << QByteArray(largestWorkspace + 1, ' ') << "larger than 4 MiB";
}

void TestWorkspaceFile::aFileThatCannotBeReadIsNamed()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, cause);
    writeBytes(path(), content);
    QVERIFY2(complaint(path()).contains(cause), qPrintable(complaint(path())));
    QVERIFY(complaint(path()).contains(path()));
    QVERIFY(complaint(path("none")).contains(path("none")));
}

void TestWorkspaceFile::aPipeHoldsUpNobody()
{
    QCOMPARE(::mkfifo(qPrintable(path()), 0600), 0);
    QVERIFY(complaint(path()).contains("it is no file"));
    QVERIFY(complaint(fFolder->path()).contains("it is no file"));
}

void TestWorkspaceFile::aNewersWorkIsNotReplaced()
{
    const QByteArray newer = "{\"format\": \"tarvek-workspace\", \"version\": 2, \"rooms\": {}}";
    writeBytes(path(), newer);
    const QString problem = writeWorkspace(example(), path());
    QVERIFY2(problem.contains("a newer version"), qPrintable(problem));
    QVERIFY(problem.contains(path()));
    QCOMPARE(bytesOf(path()), newer);
}

void TestWorkspaceFile::whatIsTooLargeIsNotWritten()
{
    QCOMPARE(writeWorkspace(example(), path()), QString());
    const QByteArray before = bytesOf(path());
    Workspace large = example();
    PanelContent panel{"Probe", "Probe 1", {}};
    for (int i = 0; i < largestWorkspace / 16000 + 1; ++i)
        panel.arrangement[QString::number(i)] = QString(16000, 'x');
    large.windows[0].content.panels = {panel};
    const QString problem = writeWorkspace(large, path());
    QVERIFY2(problem.contains("larger than 4 MiB"), qPrintable(problem));
    QCOMPARE(bytesOf(path()), before);
}

REGISTER_TEST(TestWorkspaceFile, HostApplication)
#include "tst_workspace_file.moc"
