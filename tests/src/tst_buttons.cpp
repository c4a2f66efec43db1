// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QIcon>
#include <QImage>
#include <QtTest>

namespace {

const QString folder = QStringLiteral(GLIMMET_BUTTONS_DIR "/");

/// How far two colours are apart in brightness, 0 to 255.
int contrast(const QColor& one, const QColor& other)
{
    return qAbs(qGray(one.rgb()) - qGray(other.rgb()));
}

} // namespace

/// The images of the panel's buttons.
class TestButtons : public GuardedTest
{
    Q_OBJECT

private slots:
    void everyImageHasItsDrawingAndBothSizes_data();
    void everyImageHasItsDrawingAndBothSizes();
    void shapesStandOutOnLightAndDark_data();
    void shapesStandOutOnLightAndDark();

private:
    static void nameAll();
};

void TestButtons::nameAll()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"refresh", "open", "save", "play", "pause", "new"})
        QTest::newRow(name) << QString(name);
}

void TestButtons::everyImageHasItsDrawingAndBothSizes_data()
{
    nameAll();
}

void TestButtons::everyImageHasItsDrawingAndBothSizes()
{
    QFETCH(QString, name);
    QVERIFY(QFile::exists(folder + name + ".svg"));
    QCOMPARE(QImage(folder + name + ".png").size(), QSize(32, 32));
    QCOMPARE(QImage(folder + name + "@2x.png").size(), QSize(64, 64));
}

void TestButtons::shapesStandOutOnLightAndDark_data()
{
    nameAll();
}

void TestButtons::shapesStandOutOnLightAndDark()
{
    QFETCH(QString, name);
    const QIcon icon(folder + name + ".png");
    for (const int size : {16, 25}) {
        const QImage image = icon.pixmap(size, size).toImage();
        QCOMPARE(image.size(), QSize(size, size));
        const QColor tile = image.pixelColor(size / 2, 1);
        for (const QColor& background : {QColor(Qt::white), QColor(43, 43, 43)})
            QVERIFY(contrast(tile, background) > 50);
        int bright = 0;
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x)
                bright += contrast(image.pixelColor(x, y), tile) > 100 ? 1 : 0;
        }
        QVERIFY2(bright > size * size / 8, qPrintable(QString("%1 pixels").arg(bright)));
    }
}

REGISTER_TEST(TestButtons, QApplication)
#include "tst_buttons.moc"
