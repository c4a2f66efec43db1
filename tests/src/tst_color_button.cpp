// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/modal_driver.h"
#include "support/patience.h"
#include "support/register_test.h"

#include "color_button.h"
#include "key_row.h"
#include "key_tree.h"
#include "model.h"

#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
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

/// Does `action` with the colour chooser as soon as it stands; that it does not is a failure.
void whenTheChooserOpens(const std::function<void(QColorDialog*)>& action)
{
    auto user = std::make_unique<ModalDriver>();
    user->then<QColorDialog>([action](QColorDialog& chooser) { action(&chooser); });
    GuardedTest::keepUntilEnd(std::move(user));
}

void press(QColorDialog* dialog, QDialogButtonBox::StandardButton which)
{
    auto* buttons = dialog->findChild<QDialogButtonBox*>();
    QTest::mouseClick(buttons->button(which), Qt::LeftButton);
}

/// Closes every dialog that opens, a while after it came to the front.
class Closer : public QObject
{
public:
    Closer() { startTimer(5); }

    int mostChoosers = 0; ///< at one time
    int mostDialogs = 0;
    int closed = 0;

private:
    void timerEvent(QTimerEvent* /*event*/) override
    {
        int choosers = 0;
        int dialogs = 0;
        for (const QWidget* window : QApplication::topLevelWidgets()) {
            choosers += qobject_cast<const QColorDialog*>(window) && window->isVisible() ? 1 : 0;
            dialogs += qobject_cast<const QDialog*>(window) && window->isVisible() ? 1 : 0;
        }
        mostChoosers = qMax(mostChoosers, choosers);
        mostDialogs = qMax(mostDialogs, dialogs);
        QWidget* front = QApplication::activeModalWidget();
        fTicks = front && front == fFront ? fTicks + 1 : 0;
        fFront = front;
        if (fTicks < 20)
            return;
        ++closed;
        front->close();
    }

    QPointer<QWidget> fFront;
    int fTicks = 0;
};

/// A table of one row, whose cell of the colour is the current one.
class OneKey
{
public:
    OneKey()
    {
        tree.setColumnCount(2);
        tree.addTopLevelItem(row);
        tree.installButtons(1, [this](QTreeWidgetItem& /*item*/) {
            return new ColorButton(row->color(), tree.viewport());
        });
        tree.show();
        tree.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&tree, patience));
        tree.setFocus();
        tree.setCurrentItem(row, 1);
    }

    Color color = colorOf(1, 2, 3);
    KeyTree tree;
    KeyRow* row = new KeyRow(color);
};

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
    void keysThatComeInOneGoOpenOneChooser_data();
    void keysThatComeInOneGoOpenOneChooser();
    void aKeyOpensOneChooserAfterAnother();
    void noChooserOpensAboveAnotherDialog();
    void aClickBeneathAnotherDialogIsLost();
    void aDialogMayHaveItsOwnColours();
    void aFrameShowsTheFocus();
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

void TestColorButton::keysThatComeInOneGoOpenOneChooser_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::newRow("twice Space") << int(Qt::Key_Space) << int(Qt::Key_Space);
    QTest::newRow("Space and Return") << int(Qt::Key_Space) << int(Qt::Key_Return);
}

void TestColorButton::keysThatComeInOneGoOpenOneChooser()
{
    QFETCH(int, first);
    QFETCH(int, second);
    OneKey key;
    const Closer closer;
    QTest::keyClick(&key.tree, Qt::Key(first));
    QTest::keyClick(&key.tree, Qt::Key(second));
    TRY_COMPARE(closer.closed, 1);
    for (int i = 0; i < 20; ++i)
        QCoreApplication::processEvents();
    QCOMPARE(closer.mostChoosers, 1);
    QVERIFY(!QApplication::activeModalWidget());
}

void TestColorButton::aKeyOpensOneChooserAfterAnother()
{
    OneKey key;
    int seen = 0;
    for (const Qt::Key press : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Space}) {
        whenTheChooserOpens([&seen](QColorDialog* dialog) {
            dialog->setCurrentColor(QColor(10 * ++seen, 0, 0));
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        const int before = seen;
        QTest::keyClick(QApplication::focusWidget(), press);
        TRY_COMPARE(key.color.red, 10 * (before + 1));
        key.tree.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&key.tree, patience));
    }
}

void TestColorButton::noChooserOpensAboveAnotherDialog()
{
    OneKey key;
    QFileDialog file(&key.tree);
    const Closer closer;
    QTest::keyClick(&key.tree, Qt::Key_Space);
    file.exec();
    QCOMPARE(closer.closed, 1);
    QCOMPARE(closer.mostDialogs, 1);
    QCOMPARE(closer.mostChoosers, 0);
}

void TestColorButton::aClickBeneathAnotherDialogIsLost()
{
    OneKey key;
    QDialog other;
    other.setModal(true);
    other.show();
    QCOMPARE(QApplication::activeModalWidget(), &other);
    auto* button = key.tree.findChild<ColorButton*>();
    // Were a chooser to open, it would be closed, and be seen.
    bool hasOpened = false;
    whenTheChooserOpens([&hasOpened](QColorDialog* dialog) {
        hasOpened = true;
        dialog->close();
    });
    button->click();
    QVERIFY(!hasOpened);
    other.close();
    button->click();
    QVERIFY(hasOpened);
}

void TestColorButton::aDialogMayHaveItsOwnColours()
{
    Color color = colorOf(1, 2, 3);
    QDialog dialog;
    ColorButton button(color, &dialog);
    dialog.setModal(true);
    dialog.show();
    whenTheChooserOpens([](QColorDialog* chooser) {
        chooser->setCurrentColor(QColor(250, 120, 60));
        press(chooser, QDialogButtonBox::Ok);
    });
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(color.red, 250);
}

void TestColorButton::aFrameShowsTheFocus()
{
    Color color = colorOf(200, 40, 30);
    QWidget window;
    auto* button = new ColorButton(color, &window);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window, patience));
    window.setFocus();
    button->clearFocus();
    const QImage without = button->grab().toImage();
    button->setFocus();
    const QImage with = button->grab().toImage();
    QVERIFY(with.pixelColor(0, 8) != with.pixelColor(1, 8));
    QVERIFY(with.pixelColor(1, 8) != QColor(200, 40, 30));
    QCOMPARE(with.pixelColor(8, 8), QColor(200, 40, 30));
    QVERIFY(with != without);
}

REGISTER_TEST(TestColorButton, QApplication)
#include "tst_color_button.moc"
