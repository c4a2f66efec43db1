// SPDX-License-Identifier: MIT
#include "support/files.h"
#include "support/forked_action.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/modal_driver.h"
#include "support/patience.h"
#include "support/register_test.h"
#include "windows/saved_file.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QSettings>
#include <QtTest>

#include <sys/resource.h>

/// The way from a command that saves something to a file.
class TestSavedFile : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void suggestsANameInTheFolderOfLastTime();
    void theNameGetsTheSuffixOfItsKind();
    void asksBeforeItReplaces();
    void aFolderThatIsGoneIsNotOffered();
    void aFullDiskLeavesTheOldFile();
    void namesAreHarmless_data();
    void namesAreHarmless();

private:
    QString ask() { return askWhereToSave(fWindow.data(), fQuestion); }
    QString path(const QString& name) const { return fFolder->filePath(name); }

    QScopedPointer<QTemporaryDir> fFolder;
    QScopedPointer<QWidget> fWindow;
    SaveQuestion fQuestion;
};

void TestSavedFile::init()
{
    QSettings().clear();
    fFolder.reset(new QTemporaryDir);
    fWindow.reset(new QWidget);
    fWindow->show();
    fQuestion = {"Save", "an arm", {"Picture (*.png)", "Paper (*.pdf)"}, "pictures", path("")};
}

void TestSavedFile::suggestsANameInTheFolderOfLastTime()
{
    QVERIFY(QDir().mkpath(path("deep/er")));
    ModalDriver user;
    user.then<QFileDialog>([this](QFileDialog& dialog) {
        QCOMPARE(dialog.selectedFiles(), QStringList(path("an arm.png")));
        chooseFile(dialog, path("deep/er/x.png"));
    });
    QCOMPARE(ask(), path("deep/er/x.png"));
    user.then<QFileDialog>([this](QFileDialog& dialog) {
        QCOMPARE(dialog.selectedFiles(), QStringList(path("deep/er/an arm.png")));
        acceptDialog(dialog);
    });
    QCOMPARE(ask(), path("deep/er/an arm.png"));
}

void TestSavedFile::theNameGetsTheSuffixOfItsKind()
{
    ModalDriver user;
    user.then<QFileDialog>([this](QFileDialog& dialog) { chooseFile(dialog, path("x")); });
    QCOMPARE(ask(), path("x.png"));
    user.then<QFileDialog>([this](QFileDialog& dialog) {
        dialog.selectNameFilter("Paper (*.pdf)");
        emit dialog.filterSelected("Paper (*.pdf)"); // as choosing it in the list does
        QCOMPARE(dialog.selectedFiles(), QStringList(path("an arm.pdf")));
        chooseFile(dialog, path("y"));
    });
    QCOMPARE(ask(), path("y.pdf"));
}

void TestSavedFile::asksBeforeItReplaces()
{
    QCOMPARE(saveFile(path("x.png"), "old"), QString());
    ModalDriver user;
    user.then<QFileDialog>([this, &user](QFileDialog& dialog) {
        user.then<QMessageBox>([this, &user](QMessageBox& box) {
            QVERIFY(box.text().contains("x.png"));
            user.then<QFileDialog>([](QFileDialog& again) { cancelDialog(again); });
            QTest::mouseClick(static_cast<QWidget*>(box.button(QMessageBox::No)), Qt::LeftButton);
        });
        chooseFile(dialog, path("x")); // without the suffix, too
    });
    QCOMPARE(ask(), QString());
    QVERIFY(user.isDone());
}

void TestSavedFile::aFolderThatIsGoneIsNotOffered()
{
    QSettings().setValue("folders/pictures", path("gone"));
    ModalDriver user;
    user.then<QFileDialog>([this](QFileDialog& dialog) {
        QCOMPARE(dialog.directory(), QDir(fFolder->path()));
        cancelDialog(dialog);
    });
    QCOMPARE(ask(), QString());
}

void TestSavedFile::aFullDiskLeavesTheOldFile()
{
    const QString file = path("table.csv");
    QCOMPARE(saveFile(file, "an old table"), QString());
    ForkedAction onFullDisk([&] {
        const rlimit none{10, 10};
        ::signal(SIGXFSZ, SIG_IGN);
        ::setrlimit(RLIMIT_FSIZE, &none);
        return saveFile(file, "another table").contains(file) ? 0 : 1;
    });
    QCOMPARE(onFullDisk.waitForExit(), 0);
    QCOMPARE(bytesOf(file), QByteArray("an old table"));
}

void TestSavedFile::namesAreHarmless_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << "Tarvek Desktop (connected to 10.0.0.7)"
                           << "Tarvek Desktop (connected to 10.0.0.7)";
    QTest::newRow("way out") << "../../etc/passwd"
                             << "etc-passwd";
    QTest::newRow("lines") << "a\n\tb"
                           << "a b";
    QTest::newRow("special") << "a\\b:c*d?e\"f<g>h|i\x01j"
                             << "a-b-c-d-e-f-g-h-i-j";
    QTest::newRow("long") << QString(1000, 'x') << QString(100, 'x');
}

void TestSavedFile::namesAreHarmless()
{
    QFETCH(QString, text);
    QFETCH(QString, name);
    QCOMPARE(harmlessName(text), name);
}

REGISTER_TEST(TestSavedFile, HostApplication)
#include "tst_saved_file.moc"
