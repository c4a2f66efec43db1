// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "support/zo_program.h"

#include <QTemporaryDir>
#include <QtTest>

/// How `zo record` finds the program that it becomes, wherever `zo` itself stands.
class TestBecomeRecorder : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void theRecorderBesideItComesFirst();
    void aRecorderInPathWillDo();
    void withoutAnyItTellsWhereOneIsLookedFor();
    void oneThatCannotStartIsNamed();

private:
    QString pathOf(const QString& name) const { return fFolder->filePath(name); }
    void putRecorder(const QString& path, const QByteArray& says) const;
    Ended runCopy() const;

    std::unique_ptr<QTemporaryDir> fFolder;
};

void TestBecomeRecorder::init()
{
    fFolder = std::make_unique<QTemporaryDir>();
    QVERIFY(QFile::copy(ZO_PROGRAM, pathOf("zo")));
    QVERIFY(QDir(fFolder->path()).mkdir("bin"));
}

void TestBecomeRecorder::putRecorder(const QString& path, const QByteArray& says) const
{
    writeBytes(path, "#!/bin/sh\necho " + says + " \"$@\"\n");
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

/// The copy in the folder, for which only `bin` beneath it is in PATH.
Ended TestBecomeRecorder::runCopy() const
{
    Program zo(pathOf("zo"), {"record", "--for", "1s", "a"});
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("PATH", pathOf("bin"));
    zo.setProcessEnvironment(environment);
    zo.start();
    return endOf(zo);
}

void TestBecomeRecorder::theRecorderBesideItComesFirst()
{
    putRecorder(pathOf("zo-record"), "beside");
    putRecorder(pathOf("bin/zo-record"), "path");
    QCOMPARE(runCopy().output, QByteArray("beside --for 1s a\n"));
}

void TestBecomeRecorder::aRecorderInPathWillDo()
{
    putRecorder(pathOf("bin/zo-record"), "path");
    QCOMPARE(runCopy().output, QByteArray("path --for 1s a\n"));
}

void TestBecomeRecorder::withoutAnyItTellsWhereOneIsLookedFor()
{
    const Ended end = runCopy();
    QCOMPARE(end.status, 1);
    QVERIFY2(end.errors.contains("the program zo-record is missing"), end.errors);
    QVERIFY2(end.errors.contains("beside zo, or in a folder of PATH"), end.errors);
    QCOMPARE(end.errors.count('\n'), 1);
}

void TestBecomeRecorder::oneThatCannotStartIsNamed()
{
    writeBytes(pathOf("zo-record"), "no program");
    const Ended end = runCopy();
    QCOMPARE(end.status, 1);
    QVERIFY2(end.errors.contains("cannot start zo-record: "), end.errors);
    QVERIFY2(end.errors.contains("Permission denied"), end.errors);
}

REGISTER_TEST(TestBecomeRecorder, NoApplication)
#include "tst_become_recorder.moc"
