// SPDX-License-Identifier: MIT
#include "support/guarded_test.h"
#include "support/key_table.h"
#include "support/register_test.h"

#include <QAccessible>
#include <QtTest>

#include <utility>

namespace {

QVector<QObject*> heard; ///< whose cells are said to have changed

} // namespace

// The platform of the tests has no screen reader: these stand before the toolkit's own.

bool QAccessible::isActive()
{
    return true;
}

void QAccessible::updateAccessibility(QAccessibleEvent* event)
{
    if (event->type() == QAccessible::TableModelChanged)
        heard += event->object();
}

/// What a screen reader hears of the table.
class TestAccessibility : public GuardedTest
{
    Q_OBJECT

private slots:
    void aBatchIsToldOnce();
    void aWriteOutsideOfABatchIsTold();
    void buttonsAreNoChangeOfCells();
};

void TestAccessibility::aBatchIsToldOnce()
{
    for (const int count : {1, 100}) {
        KeyTable f(manyNames(count));
        f.show();
        heard.clear();
        {
            const KeyTree::WriteBatch batch(f.tree);
            for (QTreeWidgetItem* row : std::as_const(f.rows)) {
                row->setText(0, "y");
                row->setText(1, "x");
            }
            QVERIFY(heard.isEmpty());
        }
        QCOMPARE(heard, QVector<QObject*>{&f.tree});
    }
}

void TestAccessibility::aWriteOutsideOfABatchIsTold()
{
    KeyTable f({"a"});
    f.show();
    heard.clear();
    f.rows[0]->setText(1, "x");
    QCOMPARE(heard, QVector<QObject*>{&f.tree});
}

void TestAccessibility::buttonsAreNoChangeOfCells()
{
    KeyTable f(manyNames(RowButtons::fLimit + 100));
    f.show();
    heard.clear();
    f.installButtons();
    f.tree.scrollToBottom();
    QVERIFY(f.button(RowButtons::fLimit + 99)->isVisible());
    QVERIFY(heard.isEmpty());
}

REGISTER_TEST(TestAccessibility, QApplication)
#include "tst_accessibility.moc"
