// SPDX-License-Identifier: MIT
#include "language/languages.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/register_test.h"
#include "support/window_bench.h"

#include <QClipboard>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QToolBar>
#include <QTreeWidget>
#include <QtTest>

/// Finding and copying in the tables of panels, with the keyboard.
class TestFindBar : public GuardedTest, private WindowBench
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        GuardedTest::initTestCase();
        speak("en"); // as the program does: English has singulars, too
    }
    void init();
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void findsWhileOneTypes();
    void keysGoFromMatchToMatch();
    void escapeEndsItAtTheMatch();
    void marksWhatMatches();
    void saysWhenThereIsNothing();
    void followsThePanelInFront();
    void aPanelThatClosesEndsTheSearch();
    void copiesCellRowAndTable();
    void savesTheTable();
    void copiesAPicture();

private:
    QToolBar* bar() const { return fWindow->findChild<QToolBar*>("findBar"); }
    QLineEdit* edit() const { return bar()->findChild<QLineEdit*>(); }
    QString countText() const { return bar()->findChild<QLabel*>("findCount")->text(); }
    QTreeWidget* table() const { return fWindow->frontDock()->panel()->findChild<QTreeWidget*>(); }
    QString current() const { return table()->currentIndex().data().toString(); }
    void find(const QString& text);
    static QWidget* focused() { return QApplication::focusWidget(); }
};

void TestFindBar::init()
{
    setUp();
    action("Table")->trigger();
    QVERIFY(QTest::qWaitForWindowActive(fWindow.data(), patience));
    TRY_VERIFY(fWindow->frontDock()->isArranged());
    table()->sortByColumn(0, Qt::AscendingOrder);
    table()->setFocus();
}

void TestFindBar::find(const QString& text)
{
    QTest::keyClick(focused(), Qt::Key_F, Qt::ControlModifier);
    QVERIFY(bar()->isVisible() && edit()->hasFocus());
    QTest::keyClicks(focused(), text);
}

void TestFindBar::findsWhileOneTypes()
{
    QVERIFY(!bar()->isVisible());
    find("oint 1");
    TRY_COMPARE(countText(), QString("11 matches"));
    QCOMPARE(current(), QString("Joint 1"));
    QTest::keyClicks(focused(), "7");
    TRY_COMPARE(current(), QString("Joint 17"));
    TRY_COMPARE(countText(), QString("1 match"));
}

void TestFindBar::keysGoFromMatchToMatch()
{
    find("joint 1");
    TRY_COMPARE(current(), QString("Joint 1"));
    QTest::keyClick(focused(), Qt::Key_Return);
    TRY_COMPARE(current(), QString("Joint 10"));
    QTest::keyClick(focused(), Qt::Key_F3);
    TRY_COMPARE(current(), QString("Joint 11"));
    QTest::keyClick(focused(), Qt::Key_F3, Qt::ShiftModifier);
    TRY_COMPARE(current(), QString("Joint 10"));
    QTest::keyClick(focused(), Qt::Key_Return, Qt::ShiftModifier);
    TRY_COMPARE(current(), QString("Joint 1"));
    QTest::keyClick(focused(), Qt::Key_Return, Qt::ShiftModifier);
    TRY_COMPARE(current(), QString("Joint 19"));
    QVERIFY(edit()->hasFocus());
}

void TestFindBar::escapeEndsItAtTheMatch()
{
    find("joint 7");
    QTest::keyClick(focused(), Qt::Key_Escape);
    QVERIFY(!bar()->isVisible());
    QVERIFY(table()->hasFocus());
    QCOMPARE(current(), QString("Joint 7"));
    table()->setCurrentIndex(table()->model()->index(0, 0));
    QTest::keyClick(table(), Qt::Key_F3);
    TRY_COMPARE(current(), QString("Joint 7"));
}

void TestFindBar::marksWhatMatches()
{
    const auto picture = [this] { return table()->viewport()->grab().toImage(); };
    const QImage before = picture();
    find("joint 1");
    table()->clearFocus();
    const auto rowOf = [this](const QString& name) {
        return table()->visualItemRect(table()->findItems(name, Qt::MatchExactly).first());
    };
    const QImage marked = picture();
    const auto isMarked = [&](const QString& name) {
        const QPoint place(table()->columnWidth(0) - 6, rowOf(name).center().y());
        return marked.pixel(place) != before.pixel(place);
    };
    QVERIFY(isMarked("Joint 10") && isMarked("Joint 11"));
    QVERIFY(!isMarked("Joint 2") && !isMarked("Joint 3"));
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, rowOf("Joint 2").center());
    QCOMPARE(table()->currentItem()->text(0), QString("Joint 2")); // through the marks
}

void TestFindBar::saysWhenThereIsNothing()
{
    find("tail");
    TRY_COMPARE(countText(), QString("Not found"));
    openProbe();
    TRY_COMPARE(countText(), QString("There is no table in this panel."));
    QTest::keyClick(edit(), Qt::Key_Return);
}

void TestFindBar::followsThePanelInFront()
{
    find("joint 3");
    QTreeWidget* const first = table();
    action("Table")->trigger();
    QVERIFY(table() != first);
    QTest::keyClick(edit(), Qt::Key_Return);
    TRY_COMPARE(current(), QString("Joint 3"));
}

void TestFindBar::aPanelThatClosesEndsTheSearch()
{
    find("joint 3");
    QTest::keyClick(focused(), Qt::Key_W, Qt::ControlModifier);
    TRY_VERIFY(docks().isEmpty());
    QTest::keyClick(edit(), Qt::Key_Return);
    QTest::keyClicks(edit(), "1");
    QTest::keyClick(edit(), Qt::Key_Escape);
    QVERIFY(!bar()->isVisible());
}

void TestFindBar::copiesCellRowAndTable()
{
    const QClipboard* clipboard = QApplication::clipboard();
    const int row =
        table()->indexOfTopLevelItem(table()->findItems("Joint 3", Qt::MatchExactly).first());
    table()->setCurrentIndex(table()->model()->index(row, 2));
    QTest::keyClick(table(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(clipboard->text(), QString("1.5"));
    QTest::keyClick(table(), Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(clipboard->text(), QString("Joint 3\t1\t1.5"));
    action("Copy all")->trigger();
    const QStringList lines = clipboard->text().split('\n');
    QCOMPARE(lines.size(), 21);
    QCOMPARE(lines.at(0), QString("Name\tOn\tValue"));
    QCOMPARE(lines.at(1), QString("Joint 0\t0\t0"));
}

void TestFindBar::savesTheTable()
{
    const QTemporaryDir folder;
    ModalDriver user;
    user.then<QFileDialog>(
        [&folder](QFileDialog& dialog) { chooseFile(dialog, folder.filePath("joints")); });
    action("Save table")->trigger();
    QFile file(folder.filePath("joints.csv"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY2(bytes.startsWith("Name,On,Value\r\nJoint 0,0,0\r\nJoint 1,1,0.5\r\n"), bytes);
    QCOMPARE(bytes.count('\n'), 21);
}

void TestFindBar::copiesAPicture()
{
    action("Copy picture")->trigger();
    const QPixmap picture = QApplication::clipboard()->pixmap();
    QCOMPARE(picture.size(), fWindow->frontDock()->panel()->size());
}

REGISTER_TEST(TestFindBar, HostApplication)
#include "tst_find_bar.moc"
