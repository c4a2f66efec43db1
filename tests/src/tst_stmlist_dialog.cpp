// SPDX-License-Identifier: MIT
#include "stmlist_dialog.h"
#include "support/guarded_test.h"
#include "support/patience.h"
#include "support/register_test.h"

#include <QCheckBox>
#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStyleOptionViewItem>
#include <QtTest>

#include <memory>
#include <string>
#include <vector>

namespace {

using Pairs = QList<QPair<QString, QString>>;

const std::vector<std::string> someNames = {"Leg/Knee",  "Device/Hand/Raw", "Arm/Elbow",
                                            "arm/wrist", "device/lower",    "Battery"};

/// A dialog on the screen, and the hands to use it.
class Shown
{
public:
    explicit Shown(const std::vector<std::string>& names = someNames) : dialog(names, nullptr)
    {
        list = dialog.findChild<QListWidget*>();
        devices = dialog.findChild<QCheckBox*>();
        filter = dialog.findChild<QLineEdit*>();
        dialog.show();
        dialog.activateWindow();
    }

    bool isReady() { return QTest::qWaitForWindowActive(&dialog, patience); }

    QPushButton* button(const QString& text) const
    {
        for (auto* each : dialog.findChildren<QPushButton*>()) {
            if (each->text() == text)
                return each;
        }
        return nullptr;
    }

    void click(const QString& text) const { QTest::mouseClick(button(text), Qt::LeftButton); }

    QListWidgetItem* item(const QString& text) const
    {
        return list->findItems(text, Qt::MatchExactly).value(0);
    }

    void clickCheckBoxOf(const QString& text) const
    {
        QStyleOptionViewItem option;
        option.initFrom(list);
        option.rect = list->visualItemRect(item(text));
        option.features =
            QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
        const QRect box =
            list->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, list);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, box.center());
    }

    // Opens the entry's editor with a double click, as a user does.
    void edit(const QString& text, const QString& alias) const
    {
        const QPoint at = list->visualItemRect(item(text)).center();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, at);
        QTest::mouseDClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, at);
        type(alias);
    }

    void type(const QString& alias) const
    {
        auto* editor = list->viewport()->findChild<QLineEdit*>();
        QVERIFY(editor);
        editor->selectAll();
        QTest::keyClicks(editor, alias);
        QTest::keyClick(editor, Qt::Key_Return);
        TRY_VERIFY(!list->viewport()->findChild<QLineEdit*>());
    }

    QStringList texts(bool shownOnly) const
    {
        QStringList result;
        for (int row = 0; row < list->count(); ++row) {
            if (!shownOnly || !list->isRowHidden(row))
                result += list->item(row)->text();
        }
        return result;
    }

    StmListDialog dialog;
    QListWidget* list;
    QCheckBox* devices;
    QLineEdit* filter;
};

} // namespace

class TestStmListDialog : public GuardedTest
{
    Q_OBJECT

private slots:
    void deviceKeysBeginWithTheirWord();
    void itIsBuiltOfAListAFilterRowAndAButtonRow();
    void entriesCanBeCheckedAndEditedButNotSelected();
    void itOpensSortedWithDeviceKeysHidden();
    void noNamesGiveAnEmptyListThatCanBeAccepted();
    void theFilterIgnoresCase();
    void theFilterMatchesAnywhereInTheText();
    void deviceKeysAreHiddenWhateverTheFilter();
    void aCheckedEntryIsChosenAlsoWhenHidden();
    void chosenKeysComeInTheOrderOfTheNames();
    void anEditedTextIsTheAlias();
    void anEditedTextDecidesWhetherItIsADevice();
    void anEditedTextMovesTheEntryWhenTheFilterChanges();
    void everyByteOfANameComesBack();
    void theSameNameTwiceIsTwoEntries();
    void cancelLeavesNothingChosen();
    void closingLeavesNothingChosen();
    void acceptingAgainForgetsTheFirstChoice();
    void theKeyboardReachesAndOperatesEverything();
    void theCurrentEntryStaysInSightAmongHiddenOnes();
    void theKeyEnterAccepts();
    void anAliasRowHasALabelAndAnEdit();
    void tenThousandNamesAreFilteredAndSorted();
};

void TestStmListDialog::deviceKeysBeginWithTheirWord()
{
    QCOMPARE(StmListDialog::fDevicesStart, QString("Device/"));
}

void TestStmListDialog::itIsBuiltOfAListAFilterRowAndAButtonRow()
{
    Shown shown;
    QVERIFY(shown.isReady());
    auto* rows = qobject_cast<QVBoxLayout*>(shown.dialog.layout());
    QVERIFY(rows && rows->count() == 3);
    QCOMPARE(rows->itemAt(0)->widget(), shown.list);
    QLayout* filterRow = rows->itemAt(1)->layout();
    QCOMPARE(filterRow->count(), 4);
    QCOMPARE(qobject_cast<QLabel*>(filterRow->itemAt(0)->widget())->text(), QString("Filter: "));
    QCOMPARE(filterRow->itemAt(1)->widget(), shown.filter);
    QCOMPARE(filterRow->itemAt(0)->alignment(), Qt::AlignLeft);
    QCOMPARE(filterRow->itemAt(1)->alignment(), Qt::AlignLeft);
    QCOMPARE(filterRow->itemAt(2)->sizeHint().width(), 3);
    QCOMPARE(filterRow->itemAt(3)->widget(), shown.devices);
    QCOMPARE(qobject_cast<QHBoxLayout*>(filterRow)->stretch(3), 1);
    QLayout* buttonRow = rows->itemAt(2)->layout();
    QCOMPARE(buttonRow->count(), 3);
    QVERIFY(buttonRow->itemAt(0)->spacerItem());
    QCOMPARE(buttonRow->itemAt(1)->widget(), shown.button("Cancel"));
    QCOMPARE(buttonRow->itemAt(2)->widget(), shown.button("Ok"));
    QCOMPARE(shown.devices->text(), QString("View devices"));
    QVERIFY(!shown.devices->isChecked());
    QCOMPARE(shown.filter->maximumWidth(), 150);
    QCOMPARE(shown.dialog.windowTitle(), QString());
}

void TestStmListDialog::entriesCanBeCheckedAndEditedButNotSelected()
{
    const Shown shown;
    QCOMPARE(shown.list->count(), static_cast<int>(someNames.size()));
    for (int row = 0; row < shown.list->count(); ++row) {
        QCOMPARE(shown.list->item(row)->flags(),
                 Qt::ItemIsUserCheckable | Qt::ItemIsEnabled | Qt::ItemIsEditable);
        QCOMPARE(shown.list->item(row)->checkState(), Qt::Unchecked);
    }
}

void TestStmListDialog::itOpensSortedWithDeviceKeysHidden()
{
    const Shown shown;
    QListWidget plain;
    for (const std::string& name : someNames)
        plain.addItem(QString::fromStdString(name));
    plain.sortItems(Qt::AscendingOrder);
    QStringList sorted;
    for (int row = 0; row < plain.count(); ++row)
        sorted += plain.item(row)->text();
    QCOMPARE(shown.texts(false), sorted);
    sorted.removeOne("Device/Hand/Raw");
    QCOMPARE(shown.texts(true), sorted);
}

void TestStmListDialog::noNamesGiveAnEmptyListThatCanBeAccepted()
{
    Shown shown(std::vector<std::string>{});
    QVERIFY(shown.isReady());
    QCOMPARE(shown.list->count(), 0);
    shown.click("Ok");
    QCOMPARE(shown.dialog.result(), int(QDialog::Accepted));
    QCOMPARE(shown.dialog.chosen(), Pairs());
}

void TestStmListDialog::theFilterIgnoresCase()
{
    Shown shown;
    QVERIFY(shown.isReady());
    QTest::keyClicks(shown.filter, "ARM");
    QCOMPARE(shown.texts(true), QStringList({"Arm/Elbow", "arm/wrist"}));
    shown.filter->clear();
    QCOMPARE(shown.texts(true).size(), 5);
}

void TestStmListDialog::theFilterMatchesAnywhereInTheText()
{
    Shown shown;
    QVERIFY(shown.isReady());
    QTest::keyClicks(shown.filter, "w");
    QCOMPARE(shown.texts(true), QStringList({"Arm/Elbow", "arm/wrist", "device/lower"}));
    QTest::keyClicks(shown.filter, "r");
    QCOMPARE(shown.texts(true), QStringList({"arm/wrist"}));
    QTest::keyClick(shown.filter, Qt::Key_Backspace);
    QCOMPARE(shown.texts(true).size(), 3);
    QTest::keyClicks(shown.filter, "?");
    QCOMPARE(shown.texts(true), QStringList());
}

void TestStmListDialog::deviceKeysAreHiddenWhateverTheFilter()
{
    Shown shown;
    QVERIFY(shown.isReady());
    QTest::keyClicks(shown.filter, "device/");
    QCOMPARE(shown.texts(true), QStringList({"device/lower"}));
    QTest::mouseClick(shown.devices, Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    QVERIFY(shown.devices->isChecked());
    QCOMPARE(shown.texts(true).size(), 2);
    QVERIFY(shown.texts(true).contains("Device/Hand/Raw"));
    QTest::mouseClick(shown.devices, Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    QCOMPARE(shown.texts(true), QStringList({"device/lower"}));
}

void TestStmListDialog::aCheckedEntryIsChosenAlsoWhenHidden()
{
    Shown shown;
    QVERIFY(shown.isReady());
    shown.clickCheckBoxOf("Battery");
    QTest::keyClicks(shown.filter, "arm");
    QVERIFY(shown.item("Battery")->isHidden());
    QCOMPARE(shown.item("Battery")->checkState(), Qt::Checked);
    shown.click("Ok");
    QCOMPARE(shown.dialog.chosen(), Pairs({{"Battery", "Battery"}}));
}

void TestStmListDialog::chosenKeysComeInTheOrderOfTheNames()
{
    Shown shown;
    QVERIFY(shown.isReady());
    for (const char* name : {"arm/wrist", "Arm/Elbow", "Leg/Knee"})
        shown.clickCheckBoxOf(name);
    shown.click("Ok");
    QCOMPARE(shown.dialog.result(), int(QDialog::Accepted));
    QCOMPARE(
        shown.dialog.chosen(),
        Pairs({{"Leg/Knee", "Leg/Knee"}, {"Arm/Elbow", "Arm/Elbow"}, {"arm/wrist", "arm/wrist"}}));
}

void TestStmListDialog::anEditedTextIsTheAlias()
{
    Shown shown;
    QVERIFY(shown.isReady());
    shown.edit("Battery", "charge");
    shown.clickCheckBoxOf("charge");
    shown.clickCheckBoxOf("Leg/Knee");
    shown.click("Ok");
    QCOMPARE(shown.dialog.chosen(), Pairs({{"Leg/Knee", "Leg/Knee"}, {"Battery", "charge"}}));
}

void TestStmListDialog::anEditedTextDecidesWhetherItIsADevice()
{
    Shown shown;
    QVERIFY(shown.isReady());
    shown.edit("Battery", "Device/Battery");
    QTest::mouseClick(shown.devices, Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    shown.edit("Device/Hand/Raw", "hand");
    QTest::mouseClick(shown.devices, Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    QVERIFY(shown.item("Device/Battery")->isHidden());
    QVERIFY(!shown.item("hand")->isHidden());
}

void TestStmListDialog::anEditedTextMovesTheEntryWhenTheFilterChanges()
{
    Shown shown(std::vector<std::string>{"b", "c", "d"});
    QVERIFY(shown.isReady());
    shown.edit("d", "aa");
    shown.clickCheckBoxOf("c");
    QCOMPARE(shown.texts(false), QStringList({"b", "c", "aa"}));
    QTest::keyClicks(shown.filter, "a");
    QCOMPARE(shown.texts(false), QStringList({"aa", "b", "c"}));
    QCOMPARE(shown.texts(true), QStringList({"aa"}));
    QCOMPARE(shown.item("c")->checkState(), Qt::Checked);
}

void TestStmListDialog::everyByteOfANameComesBack()
{
    std::string name;
    for (int byte = 0; byte < 256; ++byte)
        name += static_cast<char>(byte);
    Shown shown(std::vector<std::string>{name});
    QVERIFY(shown.isReady());
    shown.list->item(0)->setCheckState(Qt::Checked);
    shown.click("Ok");
    QCOMPARE(shown.dialog.chosen().size(), 1);
    QCOMPARE(shown.dialog.chosen()[0].first.toLatin1().toStdString(), name);
    QCOMPARE(shown.dialog.chosen()[0].second.toLatin1().toStdString(), name);
}

void TestStmListDialog::theSameNameTwiceIsTwoEntries()
{
    Shown shown(std::vector<std::string>{"a", "a"});
    QVERIFY(shown.isReady());
    shown.clickCheckBoxOf("a");
    shown.click("Ok");
    QCOMPARE(shown.list->count(), 2);
    QCOMPARE(shown.dialog.chosen(), Pairs({{"a", "a"}}));
}

void TestStmListDialog::cancelLeavesNothingChosen()
{
    Shown shown;
    QVERIFY(shown.isReady());
    shown.clickCheckBoxOf("Battery");
    shown.click("Cancel");
    QVERIFY(!shown.dialog.isVisible());
    QCOMPARE(shown.dialog.result(), int(QDialog::Rejected));
    QCOMPARE(shown.dialog.chosen(), Pairs());
}

void TestStmListDialog::closingLeavesNothingChosen()
{
    Shown shown;
    QVERIFY(shown.isReady());
    shown.clickCheckBoxOf("Battery");
    QTest::keyClick(shown.list, Qt::Key_Escape);
    QVERIFY(!shown.dialog.isVisible());
    QCOMPARE(shown.dialog.result(), int(QDialog::Rejected));
    QCOMPARE(shown.dialog.chosen(), Pairs());
}

void TestStmListDialog::acceptingAgainForgetsTheFirstChoice()
{
    Shown shown;
    QVERIFY(shown.isReady());
    shown.clickCheckBoxOf("Battery");
    shown.dialog.onOk();
    shown.item("Battery")->setCheckState(Qt::Unchecked);
    shown.item("Arm/Elbow")->setCheckState(Qt::Checked);
    shown.dialog.onOk();
    QCOMPARE(shown.dialog.chosen(), Pairs({{"Arm/Elbow", "Arm/Elbow"}}));
}

void TestStmListDialog::theKeyboardReachesAndOperatesEverything()
{
    Shown shown;
    QVERIFY(shown.isReady());
    const QList<QWidget*> order = {shown.list, shown.filter, shown.devices, shown.button("Cancel"),
                                   shown.button("Ok")};
    for (QWidget* each : order) {
        QCOMPARE(QApplication::focusWidget(), each);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(QApplication::focusWidget(), shown.list);
    const QString last = shown.texts(true).constLast();
    QTest::keyClick(shown.list, Qt::Key_End);
    QCOMPARE(shown.list->currentItem()->text(), last);
    QTest::keyClick(shown.list, Qt::Key_Space);
    QCOMPARE(shown.item(last)->checkState(), Qt::Checked);
    QTest::keyClick(shown.list, Qt::Key_F2);
    shown.type("other");
    QVERIFY(shown.dialog.isVisible());
    shown.devices->setFocus();
    QTest::keyClick(shown.devices, Qt::Key_Space);
    QVERIFY(shown.devices->isChecked());
    shown.button("Ok")->setFocus();
    QTest::keyClick(shown.button("Ok"), Qt::Key_Space);
    QCOMPARE(shown.dialog.chosen(), Pairs({{last, "other"}}));
}

void TestStmListDialog::theCurrentEntryStaysInSightAmongHiddenOnes()
{
    std::vector<std::string> names;
    names.reserve(100);
    for (int i = 0; i < 100; ++i)
        names.push_back((i % 6 ? "Motion/Body/Joint" : "Device/Joint") + std::to_string(i));
    Shown shown(names);
    QVERIFY(shown.isReady());
    const auto visible = shown.texts(true).size();
    QCOMPARE(visible, 83);
    for (int i = 0; i < visible; ++i) {
        QCOMPARE(shown.list->currentItem()->text(), shown.texts(true).at(i));
        const QRect place = shown.list->visualItemRect(shown.list->currentItem());
        QVERIFY(shown.list->viewport()->rect().contains(place.center()));
        QTest::keyClick(shown.list, Qt::Key_Down);
    }
}

void TestStmListDialog::theKeyEnterAccepts()
{
    Shown shown;
    QVERIFY(shown.isReady());
    shown.clickCheckBoxOf("Battery");
    shown.filter->setFocus();
    QTest::keyClick(shown.filter, Qt::Key_Return);
    QCOMPARE(shown.dialog.result(), int(QDialog::Accepted));
    QCOMPARE(shown.dialog.chosen(), Pairs({{"Battery", "Battery"}}));
}

void TestStmListDialog::anAliasRowHasALabelAndAnEdit()
{
    Shown shown;
    QGridLayout grid;
    QList<QPair<QString, QLineEdit*>> list = {{"old", nullptr}};
    shown.dialog.xMakeAliasWidget("Arm/Elbow", grid, 3, list);
    auto* label = qobject_cast<QLabel*>(grid.itemAtPosition(3, 0)->widget());
    auto* edit = qobject_cast<QLineEdit*>(grid.itemAtPosition(3, 1)->widget());
    QVERIFY(label && edit);
    QCOMPARE(label->text(), QString("Arm/Elbow:"));
    QCOMPARE(edit->text(), QString("Arm/Elbow"));
    QCOMPARE(label->parentWidget(), &shown.dialog);
    QCOMPARE(edit->parentWidget(), &shown.dialog);
    QCOMPARE(list.size(), 2);
    QCOMPARE(list[1], qMakePair(QString("Arm/Elbow"), edit));
}

void TestStmListDialog::tenThousandNamesAreFilteredAndSorted()
{
    std::vector<std::string> names;
    names.reserve(10000);
    for (int i = 0; i < 10000; ++i)
        names.push_back((i % 10 ? "Joint/" : "Device/") + std::to_string(i * 7919 % 10000));
    Shown shown(names);
    QVERIFY(shown.isReady());
    QTest::keyClicks(shown.filter, "99");
    QStringList expected;
    for (const std::string& name : names) {
        if (name[0] == 'J' && name.find("99") != std::string::npos)
            expected += QString::fromStdString(name);
    }
    expected.sort();
    QStringList found = shown.texts(true);
    QVERIFY(expected.size() > 100);
    found.sort();
    QCOMPARE(found, expected);
    QStringList all = shown.texts(false);
    QVERIFY(std::is_sorted(all.begin(), all.end(), [](const QString& a, const QString& b) {
        return a.localeAwareCompare(b) < 0;
    }));
}

REGISTER_TEST(TestStmListDialog, QApplication)
#include "tst_stmlist_dialog.moc"
