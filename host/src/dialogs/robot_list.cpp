// SPDX-License-Identifier: MIT
#include "dialogs/robot_list.h"

#include "connection/plain_tool_tip.h"

#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

RobotList::RobotList(QWidget* parent) : QWidget(parent), fList(new QListWidget(this))
{
    fList->setObjectName("robots");
    fList->setToolTip(tr("Robots that you have saved. A double click renames one."));
    auto* label = new QLabel(tr("Sa&ved robots:"), this);
    label->setBuddy(fList);
    fUpButton = addButton(tr("Up"), "up");
    fDownButton = addButton(tr("Down"), "down");
    fDeleteButton = addButton(tr("Delete..."), "delete");
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label, 0, 0, 1, 3);
    layout->addWidget(fList, 1, 0, 1, 3);
    layout->addWidget(fUpButton, 2, 0);
    layout->addWidget(fDownButton, 2, 1);
    layout->addWidget(fDeleteButton, 2, 2);
    connect(fList, &QListWidget::currentRowChanged, this, &RobotList::xChoose);
    connect(fList, &QListWidget::itemChanged, this, &RobotList::xRename);
    connect(fUpButton, &QPushButton::clicked, this, [this] { xMove(-1); });
    connect(fDownButton, &QPushButton::clicked, this, [this] { xMove(1); });
    connect(fDeleteButton, &QPushButton::clicked, this, &RobotList::xDelete);
    refresh(QString());
}

QPushButton* RobotList::addButton(const QString& text, const char* name)
{
    auto* button = new QPushButton(text, this);
    button->setObjectName(name);
    button->setAutoDefault(false); // Enter connects
    return button;
}

void RobotList::refresh(const QString& name)
{
    const QSignalBlocker quiet(fList);
    fRobots = savedRobots();
    fList->clear();
    for (const SavedRobot& robot : fRobots) {
        auto* item = new QListWidgetItem(robot.name, fList);
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        item->setToolTip(plainToolTip(robot.settings.wayText()));
        if (robot.name == name)
            fList->setCurrentItem(item);
    }
    xUpdate();
}

QString RobotList::current() const
{
    const int row = fList->currentRow();
    return row >= 0 && row < fRobots.size() ? fRobots.at(row).name : QString();
}

void RobotList::xChoose()
{
    xUpdate();
    if (!current().isEmpty())
        emit chosen(fRobots.at(fList->currentRow()));
}

/// Two robots of one name nobody could tell apart: the second keeps its own.
void RobotList::xRename(QListWidgetItem* pItem)
{
    SavedRobot& robot = fRobots[fList->row(pItem)]; // which need not be the chosen one any more
    const QString wanted = pItem->text().simplified().left(longestRobotName);
    if (renameRobot(robot.name, wanted))
        robot.name = wanted;
    const QSignalBlocker quiet(fList);
    pItem->setText(robot.name);
}

void RobotList::xMove(int pSteps)
{
    QStringList names;
    for (const SavedRobot& robot : fRobots)
        names += robot.name;
    const int from = fList->currentRow();
    names.move(from, std::clamp(from + pSteps, 0, fList->count() - 1));
    orderRobots(names);
    refresh(current());
}

void RobotList::xDelete()
{
    const SavedRobot robot = fRobots.value(fList->currentRow());
    auto* box = new QMessageBox(QMessageBox::Question, tr("Delete a robot"),
                                tr("Delete the saved robot \"%1\"?").arg(robot.name),
                                QMessageBox::Ok | QMessageBox::Cancel, this);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QDialog::accepted, this, [this, robot] {
        deleteRobot(robot.name);
        refresh(QString());
        emit deleted(robot.settings);
    });
    box->open();
}

void RobotList::xUpdate()
{
    const int row = fList->currentRow();
    fUpButton->setEnabled(row > 0);
    fDownButton->setEnabled(row >= 0 && row + 1 < fList->count());
    fDeleteButton->setEnabled(row >= 0);
}
