// SPDX-License-Identifier: MIT
#include "dialogs/offered_file.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QFileDialog>
#include <QtTest>

/// A file that a panel's own dialog begins with.
class TestOfferedFile : public GuardedTest
{
    Q_OBJECT

private slots:
    void init();
    void theFirstDialogThatOpensBeginsWithIt();
    void aDialogThatSavesDoesNot();
    void withoutAFileNothingIsChosen();
    void nothingIsOfferedAnyMoreWhenItIsGone();

private:
    /// What is chosen in a dialog as it comes up.
    static QStringList chosenIn(QFileDialog::AcceptMode mode);

    QTemporaryDir fFolder;
    QString fFile;
};

void TestOfferedFile::init()
{
    fFile = fFolder.filePath("arm one.xml");
    QFile file(fFile);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

QStringList TestOfferedFile::chosenIn(QFileDialog::AcceptMode mode)
{
    QFileDialog dialog(nullptr, QString(), "/", "*.xml");
    dialog.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile
                                                       : QFileDialog::AnyFile);
    dialog.setAcceptMode(mode);
    dialog.show();
    return dialog.selectedFiles();
}

void TestOfferedFile::theFirstDialogThatOpensBeginsWithIt()
{
    const OfferedFile offered(fFile);
    QCOMPARE(chosenIn(QFileDialog::AcceptOpen), QStringList(fFile));
    QVERIFY(!chosenIn(QFileDialog::AcceptOpen).contains(fFile));
}

void TestOfferedFile::aDialogThatSavesDoesNot()
{
    const OfferedFile offered(fFile);
    QVERIFY(!chosenIn(QFileDialog::AcceptSave).contains(fFile));
    QCOMPARE(chosenIn(QFileDialog::AcceptOpen), QStringList(fFile));
}

void TestOfferedFile::withoutAFileNothingIsChosen()
{
    const QStringList before = chosenIn(QFileDialog::AcceptOpen);
    const OfferedFile offered{QString()};
    QCOMPARE(chosenIn(QFileDialog::AcceptOpen), before);
}

void TestOfferedFile::nothingIsOfferedAnyMoreWhenItIsGone()
{
    {
        const OfferedFile offered(fFile);
    }
    QVERIFY(!chosenIn(QFileDialog::AcceptOpen).contains(fFile));
}

REGISTER_TEST(TestOfferedFile, QApplication)
#include "tst_offered_file.moc"
