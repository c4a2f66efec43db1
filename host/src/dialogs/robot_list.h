// SPDX-License-Identifier: MIT
#pragma once

#include "robots/saved_robots.h"

#include <QWidget>

class QListWidget;
class QListWidgetItem;
class QPushButton;

/// The saved robots, to choose from, rename, order and delete. What is done here is in the settings
/// at once.
class RobotList : public QWidget
{
    Q_OBJECT

public:
    explicit RobotList(QWidget* parent);

    /// Reads the settings again, and chooses the robot called `name` without telling.
    void refresh(const QString& name);
    /// The chosen one; empty: none.
    QString current() const;

signals:
    void chosen(const SavedRobot& robot);
    void deleted(const ConnectionSettings& robot);

private slots:
    void xChoose();
    void xRename(QListWidgetItem* pItem);
    void xMove(int pSteps);
    void xDelete();
    void xUpdate();

private:
    QPushButton* addButton(const QString& text, const char* name);

    QList<SavedRobot> fRobots;
    QListWidget* fList;
    QPushButton* fUpButton;
    QPushButton* fDownButton;
    QPushButton* fDeleteButton;
};
