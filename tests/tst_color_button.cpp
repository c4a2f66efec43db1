#include "support/guarded_test.h"

#include "color_button.h"
#include "model.h"

#include <QColorDialog>
#include <QDialogButtonBox>
#include <QtTest>

#include <climits>
#include <functional>

namespace {

Color colorOf(int red, int green, int blue)
{
    Color color;
    color.red = red;
    color.green = green;
    color.blue = blue;
    return color;
}

QColor shownBy(const ColorButton& button)
{
    return button.icon().pixmap(16, 16).toImage().pixelColor(8, 8);
}

/// Does `action` with the colour chooser as soon as it stands; closes it if that fails to.
void whenTheChooserOpens(const std::function<void(QColorDialog*)>& action)
{
    auto* poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, action] {
        auto* dialog = qobject_cast<QColorDialog*>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible())
            return;
        poll->stop();
        poll->deleteLater();
        action(dialog);
    });
    poll->start(5);
}

void press(QColorDialog* dialog, QDialogButtonBox::StandardButton which)
{
    auto* buttons = dialog->findChild<QDialogButtonBox*>();
    QTest::mouseClick(buttons->button(which), Qt::LeftButton);
}

} // namespace

/// The square that shows a key's colour and lets it be chosen.
class TestColorButton : public GuardedTest
{
    Q_OBJECT

private slots:
    void initTestCase();
    void isASmallSquareInTheColour();
    void theSquareIsFullAtBothDensities();
    void aConfirmedColourIsTakenOver();
    void aCancelledChooserChangesNothing();
    void escapeCancels();
    void colorsBeyondTheirRangeAreShownAsTheNearest();
    void mayBeDeletedWhileTheChooserIsOpen();
};

void TestColorButton::initTestCase()
{
    GuardedTest::initTestCase();
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void TestColorButton::isASmallSquareInTheColour()
{
    Color color = colorOf(10, 200, 30);
    QWidget parent;
    const auto* button = new ColorButton(color, &parent);
    QCOMPARE(button->size(), QSize(16, 16));
    QCOMPARE(button->minimumSize(), button->maximumSize());
    QVERIFY(button->text().isEmpty());
    QCOMPARE(button->icon().availableSizes(), QList<QSize>{QSize(16, 16)});
    QCOMPARE(shownBy(*button), QColor(10, 200, 30));
}

void TestColorButton::theSquareIsFullAtBothDensities()
{
    Color color = colorOf(200, 40, 30);
    ColorButton button(color, nullptr);
    button.show();
    for (const int ratio : {1, 2}) {
        QImage picture(QSize(16, 16) * ratio, QImage::Format_ARGB32_Premultiplied);
        picture.setDevicePixelRatio(ratio);
        picture.fill(Qt::white);
        button.render(&picture);
        int filled = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                filled += picture.pixelColor(x, y) == QColor(200, 40, 30) ? 1 : 0;
        }
        const int all = picture.width() * picture.height();
        QVERIFY2(filled > all / 2, qPrintable(QString("%1 of %2").arg(filled).arg(all)));
    }
}

void TestColorButton::aConfirmedColourIsTakenOver()
{
    Color color = colorOf(1, 2, 3);
    ColorButton button(color, nullptr);
    button.show();
    QColor offered;
    QWidget* parent = nullptr;
    whenTheChooserOpens([&](QColorDialog* dialog) {
        offered = dialog->currentColor();
        parent = dialog->parentWidget();
        dialog->setCurrentColor(QColor(250, 120, 60));
        press(dialog, QDialogButtonBox::Ok);
    });
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(offered, QColor(1, 2, 3));
    QCOMPARE(parent, &button);
    QCOMPARE(color.red, 250);
    QCOMPARE(color.green, 120);
    QCOMPARE(color.blue, 60);
    QCOMPARE(shownBy(button), QColor(250, 120, 60));
    QVERIFY(button.findChildren<QColorDialog*>().isEmpty());
}

void TestColorButton::aCancelledChooserChangesNothing()
{
    Color color = colorOf(1, 2, 3);
    ColorButton button(color, nullptr);
    button.show();
    whenTheChooserOpens([](QColorDialog* dialog) {
        dialog->setCurrentColor(QColor(250, 120, 60));
        press(dialog, QDialogButtonBox::Cancel);
    });
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(color.red, 1);
    QCOMPARE(color.green, 2);
    QCOMPARE(color.blue, 3);
    QCOMPARE(shownBy(button), QColor(1, 2, 3));
}

void TestColorButton::escapeCancels()
{
    Color color = colorOf(300, 2, 3);
    ColorButton button(color, nullptr);
    button.show();
    whenTheChooserOpens([](QColorDialog* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
    button.setFocus();
    QTest::keyClick(&button, Qt::Key_Space);
    QCOMPARE(color.red, 300);
}

void TestColorButton::colorsBeyondTheirRangeAreShownAsTheNearest()
{
    Color color = colorOf(INT_MAX, -1, 256);
    const ColorButton button(color, nullptr);
    QCOMPARE(shownBy(button), QColor(255, 0, 255));
    QCOMPARE(color.red, INT_MAX);
    QCOMPARE(color.green, -1);
}

void TestColorButton::mayBeDeletedWhileTheChooserIsOpen()
{
    Color color = colorOf(1, 2, 3);
    const QPointer<ColorButton> button = new ColorButton(color, nullptr);
    button->show();
    whenTheChooserOpens([&](QColorDialog* dialog) {
        dialog->setCurrentColor(QColor(250, 120, 60));
        delete button;
    });
    button->click();
    QVERIFY(!button);
    QCOMPARE(color.red, 1);
}

QTEST_MAIN(TestColorButton)
#include "tst_color_button.moc"
