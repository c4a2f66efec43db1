// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "windows/picture.h"

#include <QLabel>
#include <QtTest>

/// Pictures of panels.
class TestPicture : public GuardedTest
{
    Q_OBJECT

private slots:
    void savesWhatItWasGiven();
    void keepsEveryPixelOfADenseScreen();
    void aDocumentHasTheTextAsText();
    void otherFormatsAreRefused_data();
    void otherFormatsAreRefused();
    void saysWhereAndWhyItCannotSave();
    void aFailureLeavesTheOldFile();

private:
    static Picture red();
};

Picture TestPicture::red()
{
    Picture picture;
    picture.pixels = QPixmap(30, 20);
    picture.pixels.fill(Qt::red);
    return picture;
}

void TestPicture::savesWhatItWasGiven()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("a.PNG");
    QCOMPARE(savePicture(red(), file), QString());
    const QImage image(file);
    QCOMPARE(image.size(), QSize(30, 20));
    QCOMPARE(image.pixelColor(15, 10), QColor(Qt::red));
}

void TestPicture::keepsEveryPixelOfADenseScreen()
{
    const QTemporaryDir folder;
    Picture picture = red();
    picture.pixels.setDevicePixelRatio(2);
    QCOMPARE(savePicture(picture, folder.filePath("a.png")), QString());
    QCOMPARE(QImage(folder.filePath("a.png")).size(), QSize(30, 20));
}

void TestPicture::aDocumentHasTheTextAsText()
{
    const QTemporaryDir folder;
    QLabel label("a curve");
    label.resize(192, 96); // two inches by one
    const Picture picture = pictureOf(label);
    QCOMPARE(picture.pixels.size(), label.size());
    const QString name = folder.filePath("a.pdf");
    QCOMPARE(savePicture(picture, name), QString());
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY(bytes.startsWith("%PDF-"));
    QVERIFY2(bytes.contains("/MediaBox [0 0 144"), bytes.left(2000));
    QVERIFY(bytes.contains("/Font"));
}

void TestPicture::otherFormatsAreRefused_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"a", "a.jpg", "png", ".png.txt"})
        QTest::newRow(name) << name;
}

void TestPicture::otherFormatsAreRefused()
{
    QFETCH(QString, name);
    const QTemporaryDir folder;
    const QString problem = savePicture(red(), folder.filePath(name));
    QVERIFY2(problem.contains(folder.filePath(name)), qPrintable(problem));
    QVERIFY2(problem.contains(".pdf"), qPrintable(problem));
    QVERIFY(QDir(folder.path()).isEmpty());
}

void TestPicture::saysWhereAndWhyItCannotSave()
{
    const QString problem = savePicture(red(), "/does/not/exist/a.png");
    QVERIFY2(problem.contains("/does/not/exist/a.png"), qPrintable(problem));
    QVERIFY2(problem.contains("No such file"), qPrintable(problem));
}

void TestPicture::aFailureLeavesTheOldFile()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("a.png");
    QCOMPARE(savePicture(red(), file), QString());
    QVERIFY(!savePicture(Picture(), file).isEmpty());
    QCOMPARE(QImage(file).size(), QSize(30, 20));
}

REGISTER_TEST(TestPicture, QApplication)
#include "tst_picture.moc"
