// SPDX-License-Identifier: MIT
#include "robots/saved_robots.h"
#include "support/connect_dialog_bench.h"
#include "support/guarded_test.h"
#include "support/host.h"
#include "support/modal_driver.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QInputDialog>
#include <QListWidget>
#include <QMessageBox>
#include <QtTest>

/// The saved robots in the connect dialog.
class TestRobotList : public GuardedTest, private ConnectDialogBench
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup()
    {
        tearDown();
        GuardedTest::cleanup();
    }
    void aRobotIsSavedUnderAName();
    void theChosenOneIsSavedOfSeveralOfOneAddress();
    void aSavedRobotIsChosenRenamedOrderedAndDeleted();
    void aNameThatIsTypedStaysWhenAnotherRowIsClicked();
    void theSavedRobotInTheFieldsIsMarked();

private:
    void saveAs(const QString& name);
    static QStringList savedNames();
    QListWidget* list() const { return field<QListWidget>("robots"); }
    void click(int row);

    QString fSuggested; ///< as a name, by what asked for one last
};

void TestRobotList::saveAs(const QString& name)
{
    ModalDriver user;
    user.then<QInputDialog>([this, &name](QInputDialog& dialog) {
        fSuggested = dialog.textValue();
        dialog.setTextValue(name);
        acceptDialog(dialog);
    });
    QTest::mouseClick(field<QPushButton>("save"), Qt::LeftButton);
    TRY_VERIFY(user.isDone());
    TRY_VERIFY(!fDialog->findChild<QInputDialog*>());
}

QStringList TestRobotList::savedNames()
{
    QStringList names;
    for (const SavedRobot& robot : savedRobots())
        names += robot.name;
    return names;
}

void TestRobotList::click(int row)
{
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {},
                      list()->visualItemRect(list()->item(row)).center());
}

void TestRobotList::aRobotIsSavedUnderAName()
{
    type("host", "10.0.0.7");
    type("user", "me");
    type("password", "do-not-keep-this");
    saveAs("Arm 7");
    QCOMPARE(savedNames(), QStringList{"Arm 7"});
    QCOMPARE(savedRobots()[0].settings.addressText(), QString("10.0.0.7:6379"));
    QVERIFY(savedRobots()[0].settings.password.empty());
    type("port", "7000");
    saveAs("Arm 7");
    QCOMPARE(savedNames(), QStringList{"Arm 7"});
    QCOMPARE(savedRobots()[0].settings.address.port, 7000);
}

void TestRobotList::theChosenOneIsSavedOfSeveralOfOneAddress()
{
    saveRobot({"Arm", robotAt("arm", 1)});
    saveRobot({"Arm, slowly", robotAt("arm", 1)});
    saveRobot({"Leg", robotAt("leg", 1)});
    open();
    list()->setCurrentRow(1);
    type("timeout", "5000");
    saveAs("Arm, slowly");
    QCOMPARE(fSuggested, QString("Arm, slowly"));
    QCOMPARE(savedRobots()[0].settings.timeout, 0);
    QCOMPARE(savedRobots()[1].settings.timeout, 5000);
    type("host", "leg"); // another one that is saved
    saveAs("Leg");
    QCOMPARE(fSuggested, QString("Leg"));
}

void TestRobotList::aNameThatIsTypedStaysWhenAnotherRowIsClicked()
{
    saveRobot({"Arm 1", robotAt("first", 1)});
    saveRobot({"Arm 2", robotAt("second", 2)});
    open();
    click(0);
    QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {},
                       list()->visualItemRect(list()->item(0)).center());
    auto* editor = list()->findChild<QLineEdit*>();
    QVERIFY(editor);
    QTest::keyClicks(editor, "Leg"); // in place of what is selected: all
    click(1);
    TRY_COMPARE(savedNames(), QStringList({"Leg", "Arm 2"}));
    QCOMPARE(list()->currentRow(), 1);
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().addressText(), QString("second:2"));
    click(0);
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().addressText(), QString("first:1"));
}

void TestRobotList::aSavedRobotIsChosenRenamedOrderedAndDeleted()
{
    saveRobot({"Arm 1", robotAt("first", 1)});
    saveRobot({"Arm 2", robotAt("second", 2)});
    open();
    auto* list = field<QListWidget>("robots");
    list->setCurrentRow(1);
    QTest::mouseClick(connectButton(), Qt::LeftButton);
    QCOMPARE(asked().addressText(), QString("second:2"));
    QVERIFY(!field<QPushButton>("down")->isEnabled());
    QTest::mouseClick(field<QPushButton>("up"), Qt::LeftButton);
    QCOMPARE(savedNames(), QStringList({"Arm 2", "Arm 1"}));
    QCOMPARE(list->currentRow(), 0);
    list->currentItem()->setText("Leg 2");
    TRY_COMPARE(savedNames(), QStringList({"Leg 2", "Arm 1"}));
    list->currentItem()->setText("Arm 1"); // another's
    TRY_COMPARE(list->item(0)->text(), QString("Leg 2"));
    ModalDriver user;
    user.then<QMessageBox>([](QMessageBox& box) { cancelDialog(box); });
    QTest::mouseClick(field<QPushButton>("delete"), Qt::LeftButton);
    TRY_VERIFY(user.isDone());
    QCOMPARE(savedNames().size(), 2);
    user.then<QMessageBox>(
        [](QMessageBox& box) { QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton); });
    QTest::mouseClick(field<QPushButton>("delete"), Qt::LeftButton);
    TRY_COMPARE(savedNames(), QStringList{"Arm 1"});
    QCOMPARE(list->count(), 1);
}

void TestRobotList::theSavedRobotInTheFieldsIsMarked()
{
    saveRobot({"Arm 1", robotAt("first", 1)});
    saveRobot({"Arm 2", robotAt("second", 2)});
    open({}, robotAt("second", 2));
    QCOMPARE(field<QListWidget>("robots")->currentRow(), 1);
    open({}, robotAt("third", 2));
    QCOMPARE(field<QListWidget>("robots")->currentRow(), -1);
}

REGISTER_TEST(TestRobotList, HostApplication)
#include "tst_robot_list.moc"
