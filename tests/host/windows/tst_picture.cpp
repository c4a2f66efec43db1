// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"
#include "windows/picture.h"

#include <QtTest>

/// Pictures of panels.
class TestPicture : public GuardedTest
{
    Q_OBJECT

private slots:
    void namesEndInPng();
    void savesWhatItWasGiven();
    void keepsEveryPixelOfADenseScreen();
    void saysWhereAndWhyItCannotSave();
    void aFailureLeavesTheOldFile();

private:
    static QPixmap red();
};

QPixmap TestPicture::red()
{
    QPixmap picture(30, 20);
    picture.fill(Qt::red);
    return picture;
}

void TestPicture::namesEndInPng()
{
    QCOMPARE(pictureFileName(""), QString());
    QCOMPARE(pictureFileName("a"), QString("a.png"));
    QCOMPARE(pictureFileName("a.png"), QString("a.png"));
    QCOMPARE(pictureFileName("a.PNG"), QString("a.PNG"));
    QCOMPARE(pictureFileName("a.jpg"), QString("a.jpg.png"));
}

void TestPicture::savesWhatItWasGiven()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("a.png");
    QCOMPARE(savePicture(red(), file), QString());
    const QImage image(file);
    QCOMPARE(image.size(), QSize(30, 20));
    QCOMPARE(image.pixelColor(15, 10), QColor(Qt::red));
}

void TestPicture::keepsEveryPixelOfADenseScreen()
{
    const QTemporaryDir folder;
    QPixmap picture = red();
    picture.setDevicePixelRatio(2);
    QCOMPARE(savePicture(picture, folder.filePath("a.png")), QString());
    QCOMPARE(QImage(folder.filePath("a.png")).size(), QSize(30, 20));
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
    QVERIFY(!savePicture(QPixmap(), file).isEmpty());
    QCOMPARE(QImage(file).size(), QSize(30, 20));
}

REGISTER_TEST(TestPicture, QApplication)
#include "tst_picture.moc"
