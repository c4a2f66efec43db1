// SPDX-License-Identifier: MIT
#pragma once

#include "windows/panel_arrangement.h"

#include <tarvek/tarvek_widget.h>

#include <QDockWidget>
#include <QPointer>

class DockTitle;
struct ConnectionState;
struct PanelPlugin;

/// A panel's place in its window: beside others, behind a tab, or floating. Closed, it deletes
/// itself with its panel; a panel that is gone takes its dock along.
class PanelDock : public QDockWidget
{
    Q_OBJECT

public:
    PanelDock(PanelPlugin& plugin, QWidget* window);

    /// The panel's parent widget. A title that the panel gives it is the dock's.
    QWidget* holder() const { return widget(); }
    /// Puts the panel, a child of the holder, in its place.
    void setPanel(TarvekWidget* panel);
    /// What the inside is to be arranged like; empty: as the user left the last one of its kind.
    void setArrangement(const PanelArrangement& arrangement) { fWantedArrangement = arrangement; }
    /// Arranges the inside of the panel, which is in its place and shown.
    void arrangePanel();
    /// As it is now, but for sizes that the user has not set; empty as long as it is not arranged.
    PanelArrangement arrangement() const;
    bool isArranged() const { return fIsArranged; }
    /// For the next one of its kind.
    void saveArrangement() const;
    TarvekWidget* panel() const { return fPanel.data(); }
    PanelPlugin& plugin() const { return fPlugin; }

    /// The title that it would have if it were alone: the user's, the panel's, or the plug-in's.
    QString wantedTitle() const;
    QString usersTitle() const { return fUsersTitle; } ///< empty: none
    void setUsersTitle(const QString& title);
    /// Lets the user type another title.
    void editTitle();
    void setInFront(bool isInFront);
    /// Whether it can be seen: it is not behind another one's tab.
    bool isInSight() const { return fIsInSight; }

    /// How the panel's link is, which a dock that floats tells by itself.
    void showState(const ConnectionState& state, const QString& address);
    /// Tells the panel that the robot is lost, as an event of its own.
    void tellDisconnected();

signals:
    void wantedTitleChanged();
    void closing();
    void pressed(); ///< by the mouse, where nothing in it wants to know
    void sightChanged();

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private slots:
    void xOnVisibilityChanged(bool visible);

private:
    PanelPlugin& fPlugin;
    DockTitle* fTitle;
    QPointer<TarvekWidget> fPanel;
    QString fUsersTitle;
    PanelArrangement fWantedArrangement;
    PanelArrangement fUsersArrangement; ///< that it was given
    PanelArrangement fFirstArrangement; ///< what it looked like then
    bool fIsInSight = false;
    bool fIsArranged = false;
};
