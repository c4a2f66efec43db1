// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>

class FindBar;
class PanelDock;
class PanelDocks;
class QAbstractItemView;
class QAction;
class QKeySequence;
class QMainWindow;
class QMenu;
class TarvekWidget;

/// The commands of a window that do something with the panel in front, whatever panel it is.
class PanelCommands : public QObject
{
    Q_OBJECT

public:
    PanelCommands(PanelDocks& docks, QMainWindow* window);

    void addSaving(QMenu& menu);
    void addEditing(QMenu& menu);
    void addPlacing(QMenu& menu);

    /// Closes the bar to find with.
    void endFinding();

signals:
    void noted(const QString& text);
    void failed(const QString& problem);

private slots:
    void xUpdate();

private:
    using Command = void (PanelCommands::*)();

    void add(QMenu& menu, const QString& text, const QKeySequence& keys, Command command);
    PanelDock& dock() const;
    QAbstractItemView* table();
    void copyText(const QString& text);
    void report(const QString& problem, const QString& file);

    void savePicture();
    void saveTable();
    void copyCell();
    void copyRow();
    void copyTable();
    void copyPicture();
    void find();
    void findNext();
    void findPrevious();
    void nextPanel();
    void previousPanel();
    void detachPanel();
    void renamePanel();

    PanelDocks& fDocks;
    QMainWindow* fWindow;
    FindBar* fFindBar;
    QList<QAction*> fActions;
};
