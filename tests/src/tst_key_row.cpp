// SPDX-License-Identifier: MIT
#include "key_row.h"
#include "model.h"
#include "support/guarded_test.h"
#include "support/register_test.h"

#include <QDataStream>
#include <QTreeWidget>
#include <QtTest>

#include <memory>
#include <random>

namespace {

constexpr int columns = KeyRow::fColumns;

/// A tree of the key table's columns with one row, and what its model announces.
class Announced
{
public:
    explicit Announced(QTreeWidgetItem* made) : row(made)
    {
        tree.setColumnCount(columns);
        tree.addTopLevelItem(row);
        QObject::connect(
            tree.model(), &QAbstractItemModel::dataChanged,
            [this](const QModelIndex& first, const QModelIndex& last, const QVector<int>& roles) {
                QStringList words{QString::number(first.row()), QString::number(first.column()),
                                  QString::number(last.column())};
                for (const int role : roles)
                    words += QString::number(role);
                told += words.join(' ');
            });
    }

    QTreeWidget tree;
    QTreeWidgetItem* row;
    QStringList told; ///< row, first and last column, roles
};

QString described(const QVariant& value)
{
    return value.isValid() ? QString("%1 %2").arg(value.typeName(), value.toString()) : QString();
}

QStringList dataOf(const QTreeWidgetItem& item)
{
    QStringList data;
    for (int column = -1; column < item.columnCount() + 1; ++column)
        for (int role = Qt::DisplayRole; role <= Qt::UserRole; ++role)
            data += described(item.data(column, role));
    return data;
}

QVariant randomValue(std::mt19937& random)
{
    switch (random() % 7) {
    case 0:
        return {};
    case 1:
        return static_cast<int>(random() % 4) - 1;
    case 2:
        return 0.5;
    case 3:
        return QString();
    default:
        return QString(static_cast<int>(random() % 3), QChar('a'));
    }
}

/// As a stream carries it from `from` to `to`.
void send(const QTreeWidgetItem& from, QTreeWidgetItem& to)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << from;
    QDataStream in(bytes);
    in >> to;
    QCOMPARE(in.status(), QDataStream::Ok);
    QVERIFY(in.atEnd());
}

} // namespace

/// A row of the table is a tree item like any other.
class TestKeyRow : public GuardedTest
{
    Q_OBJECT

private slots:
    void hasTheColumnsOfTheTableAndGrows();
    void answersEveryWriteAsAPlainItemDoes();
    void growingInATreeAnnouncesTheWriteAlone();
    void aCloneHasAllThatTheRowHas();
    void aCloneIsARowOfItsOwn();
    void streamsCarryARowToAnother();
    void streamsCarryARowToAPlainItemAndBack();
    void rowsAreFoundByTheirTexts();
    void aRowTakenAndPutElsewhereAnnouncesItsNewPlace();
    void aRowOutsideOfATreeAnnouncesNothing();
    void aRowBelowAnotherAnnouncesItself();
    void changedFlagsAreAnnouncedForTheWholeRow();
    void theCheckStateOfAParentMayFollowItsChildren();
    void comparesWithoutATreeByTheFirstColumn();
};

void TestKeyRow::hasTheColumnsOfTheTableAndGrows()
{
    Color color;
    KeyRow row(color);
    QCOMPARE(row.columnCount(), 6);
    row.setText(0, "a");
    row.setCheckState(5, Qt::Checked);
    QCOMPARE(row.columnCount(), 6);
    row.setText(7, "b");
    QCOMPARE(row.columnCount(), 8);
    QCOMPARE(row.text(7), QString("b"));
    QVERIFY(!row.data(6, Qt::DisplayRole).isValid());
    row.setText(-1, "c");
    QCOMPARE(row.columnCount(), 8);
}

void TestKeyRow::answersEveryWriteAsAPlainItemDoes()
{
    Color color;
    const QVector<int> roles{Qt::DisplayRole,      Qt::EditRole,    Qt::DisplayRole,
                             Qt::CheckStateRole,   Qt::ToolTipRole, Qt::UserRole,
                             Qt::TextAlignmentRole};
    for (unsigned seed = 0; seed < 200; ++seed) {
        std::mt19937 random(seed);
        // Six columns from the start, as the row has.
        Announced plain(new QTreeWidgetItem(QStringList{"", "", "", "", "", "x"}));
        plain.row->setData(5, Qt::DisplayRole, QVariant());
        Announced row(new KeyRow(color));
        for (int column = 0; column < 5; ++column)
            row.row->setText(column, "");
        plain.told.clear();
        row.told.clear();
        for (int write = 0; write < 40; ++write) {
            const int column = static_cast<int>(random() % columns);
            const int role = roles[static_cast<int>(random() % 7)];
            const QVariant value = randomValue(random);
            if (column == 5 && !value.isValid())
                continue;
            plain.row->setData(column, role, value);
            row.row->setData(column, role, value);
            QCOMPARE(dataOf(*row.row), dataOf(*plain.row));
            QCOMPARE(row.told, plain.told);
        }
    }
}

void TestKeyRow::growingInATreeAnnouncesTheWriteAlone()
{
    Color color;
    Announced row(new KeyRow(color));
    row.tree.setColumnCount(columns + 3);
    row.row->setText(columns + 2, "x");
    QCOMPARE(row.told, QStringList{"0 8 8 0 2"});
    QVERIFY(!row.tree.model()->signalsBlocked());
}

void TestKeyRow::aCloneHasAllThatTheRowHas()
{
    Color color;
    KeyRow row(color);
    row.setFlags(Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
    row.setText(0, "a");
    row.setCheckState(1, Qt::Checked);
    row.setData(2, Qt::DisplayRole, 5);
    row.setToolTip(4, "tip");
    auto* child = new KeyRow(color);
    child->setText(0, "child");
    row.addChild(child);
    const std::unique_ptr<QTreeWidgetItem> clone(row.clone());
    QCOMPARE(dataOf(*clone), dataOf(row));
    QCOMPARE(clone->flags(), row.flags());
    QCOMPARE(clone->columnCount(), row.columnCount());
    QCOMPARE(clone->childCount(), 1);
    QCOMPARE(clone->child(0)->text(0), QString("child"));
    const auto* cloned = dynamic_cast<KeyRow*>(clone.get());
    QVERIFY(cloned);
    QCOMPARE(&cloned->color(), &color);
}

void TestKeyRow::aCloneIsARowOfItsOwn()
{
    Color color;
    Announced original(new KeyRow(color));
    original.row->setText(0, "a");
    original.tree.insertTopLevelItem(0, new KeyRow(color));
    original.row->setText(0, "b");
    original.told.clear();
    Announced copied(original.row->clone());
    copied.row->setText(0, "c");
    copied.row->setCheckState(1, Qt::Checked);
    QCOMPARE(original.row->text(0), QString("b"));
    QVERIFY(original.told.isEmpty());
    QCOMPARE(copied.told, (QStringList{"0 0 0 0 2", "0 1 1 10"}));
}

void TestKeyRow::streamsCarryARowToAnother()
{
    Color color;
    KeyRow from(color);
    from.setText(0, "a");
    from.setText(4, "");
    from.setCheckState(1, Qt::PartiallyChecked);
    from.setData(3, Qt::UserRole, 7);
    KeyRow to(color);
    to.setText(0, "gone");
    to.setText(2, "gone");
    to.setCheckState(2, Qt::Checked);
    send(from, to);
    QCOMPARE(dataOf(to), dataOf(from));
    to.setText(0, "b");
    to.setCheckState(1, Qt::Checked);
    QCOMPARE(to.text(0), QString("b"));
    QCOMPARE(to.checkState(1), Qt::Checked);
}

void TestKeyRow::streamsCarryARowToAPlainItemAndBack()
{
    Color color;
    KeyRow from(color);
    from.setText(0, "a");
    from.setCheckState(1, Qt::Checked);
    QTreeWidgetItem plain;
    send(from, plain);
    QCOMPARE(dataOf(plain), dataOf(from));
    plain.setText(3, "c");
    KeyRow back(color);
    send(plain, back);
    QCOMPARE(dataOf(back), dataOf(plain));
}

void TestKeyRow::rowsAreFoundByTheirTexts()
{
    Color color;
    Announced a(new KeyRow(color));
    a.row->setText(0, "abc");
    a.tree.addTopLevelItem(new KeyRow(color));
    QCOMPARE(a.tree.findItems("b", Qt::MatchContains, 0), QList<QTreeWidgetItem*>{a.row});
    QCOMPARE(a.tree.findItems("abc", Qt::MatchExactly, 0), QList<QTreeWidgetItem*>{a.row});
    QCOMPARE(a.tree.findItems("abc", Qt::MatchExactly, 1), QList<QTreeWidgetItem*>());
}

void TestKeyRow::aRowTakenAndPutElsewhereAnnouncesItsNewPlace()
{
    Color color;
    Announced a(new KeyRow(color));
    for (int i = 0; i < 3; ++i)
        a.tree.addTopLevelItem(new KeyRow(color));
    a.row->setText(0, "first");
    QCOMPARE(a.tree.takeTopLevelItem(0), a.row);
    a.row->setText(0, "away");
    a.tree.insertTopLevelItem(2, a.row);
    a.row->setText(0, "third");
    QCOMPARE(a.told, (QStringList{"0 0 0 0 2", "2 0 0 0 2"}));
    QCOMPARE(a.tree.topLevelItem(2)->text(0), QString("third"));
}

void TestKeyRow::aRowOutsideOfATreeAnnouncesNothing()
{
    Color color;
    Announced a(new KeyRow(color));
    const std::unique_ptr<QTreeWidgetItem> row(a.tree.takeTopLevelItem(0));
    row->setText(0, "x");
    QCOMPARE(row->text(0), QString("x"));
    QVERIFY(a.told.isEmpty());
}

void TestKeyRow::aRowBelowAnotherAnnouncesItself()
{
    Color color;
    Announced a(new KeyRow(color));
    auto* child = new KeyRow(color);
    a.row->addChild(new KeyRow(color));
    a.row->addChild(child);
    QSignalSpy spy(a.tree.model(), &QAbstractItemModel::dataChanged);
    child->setText(1, "x");
    QCOMPARE(spy.size(), 1);
    const auto first = spy[0][0].toModelIndex();
    const auto last = spy[0][1].toModelIndex();
    QCOMPARE(first.row(), 1);
    QVERIFY(first.parent().isValid());
    QVERIFY(first.column() <= 1 && last.column() >= 1);
}

void TestKeyRow::changedFlagsAreAnnouncedForTheWholeRow()
{
    Color color;
    Announced a(new KeyRow(color));
    a.row->setFlags(Qt::ItemIsEnabled);
    QCOMPARE(a.told.size(), 1);
    QVERIFY(a.told[0].startsWith("0 0 5"));
}

void TestKeyRow::theCheckStateOfAParentMayFollowItsChildren()
{
    Color color;
    KeyRow row(color);
    row.setFlags(row.flags() | Qt::ItemIsAutoTristate);
    auto* child = new KeyRow(color);
    row.addChild(child);
    row.addChild(new KeyRow(color));
    child->setCheckState(0, Qt::Unchecked);
    row.child(1)->setCheckState(0, Qt::Unchecked);
    row.setCheckState(0, Qt::Checked);
    QCOMPARE(child->checkState(0), Qt::Checked);
    child->setCheckState(0, Qt::Unchecked);
    QCOMPARE(row.checkState(0), Qt::PartiallyChecked);
}

void TestKeyRow::comparesWithoutATreeByTheFirstColumn()
{
    Color color;
    KeyRow small(color);
    KeyRow large(color);
    small.setText(0, "a");
    small.setText(1, "z");
    large.setText(0, "b");
    large.setText(1, "y");
    QVERIFY(small < large);
    QVERIFY(!(large < small));
}

REGISTER_TEST(TestKeyRow, QApplication)
#include "tst_key_row.moc"
