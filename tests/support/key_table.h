// SPDX-License-Identifier: MIT
#pragma once

#include "key_row.h"
#include "key_tree.h"
#include "model.h"
#include "support/patience.h"

#include <QPushButton>
#include <QtTest>

/// Counts how often the view computes where things are.
class CountingTree : public KeyTree
{
public:
    int layouts = 0;

protected:
    void updateGeometries() override
    {
        ++layouts;
        KeyTree::updateGeometries();
    }
};

inline QStringList namesOf(const QTreeWidget& tree)
{
    QStringList names;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        names += tree.topLevelItem(i)->text(0);
    return names;
}

/// A table in a small window: columns name, value, button.
class KeyTable
{
public:
    static constexpr int fButtonColumn = 2;

    explicit KeyTable(const QStringList& names = {})
    {
        tree.setColumnCount(3);
        tree.resize(400, 200);
        for (const QString& name : names) {
            auto* row = new KeyRow(color);
            row->setText(0, name);
            rows += row;
        }
        tree.addTopLevelItems(rows);
    }

    void installButtons()
    {
        tree.installButtons(fButtonColumn, [this](QTreeWidgetItem& item) {
            auto* button = new QPushButton(item.text(0), tree.viewport());
            button->setFixedSize(16, 16);
            ++buttonsMade;
            return button;
        });
    }

    void show()
    {
        tree.show();
        tree.activateWindow();
        tree.setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&tree, patience));
    }

    QPushButton* button(int row) const
    {
        return qobject_cast<QPushButton*>(tree.itemWidget(tree.topLevelItem(row), fButtonColumn));
    }

    QStringList names() const { return namesOf(tree); }

    Color color;
    CountingTree tree;
    QList<QTreeWidgetItem*> rows;
    int buttonsMade = 0;
};

inline QStringList manyNames(int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names += QString("key %1").arg(i, 6, 10, QChar('0'));
    return names;
}

/// A key pressed and let go where the focus is, as a user's hand does.
inline void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}
