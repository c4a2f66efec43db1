// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_state.h"

#include <QTimer>
#include <QToolBar>

class HighAsNeeded;
class QLabel;
class QPushButton;

/// The bar above a window's panels that is there as long as what they show is not the present: who
/// is away, since when and why, what is being done, and buttons for what the user can do. After a
/// loss it stays until the user has read which panels go on only when told to.
class OutageBar : public QToolBar
{
    Q_OBJECT

public:
    /// In ms.
    struct Times
    {
        int farewell = 1000; ///< after a return; a link that comes and goes moves no panels
        int refresh = 60000; ///< yesterday's times get their date
    };

    OutageBar(const QString& address, QWidget* parent);
    OutageBar(const QString& address, const Times& times, QWidget* parent);

    /// Shows or hides itself accordingly.
    void showState(const ConnectionState& state);
    /// Nobody else does: a window that gets an earlier arrangement back would.
    void setVisible(bool visible) override;

signals:
    void disconnectRequested();
    void reconnectRequested();
    /// The user wants to give the robot what it refused.
    void connectAgainRequested();
    /// The user has read that panels have stopped.
    void dismissed();

private slots:
    void xRefresh();
    void xEndFarewell();

private:
    void setUpLabels();
    void setUpButtons();
    void beThere();
    QPushButton* addButton(const QString& text, const QString& tip, const char* name,
                           void (OutageBar::*request)());
    bool hasNews() const { return !fState.connected || fState.stopped > 0; }

    HighAsNeeded* fPane;
    QString fAddress;
    ConnectionState fState;
    QLabel* fIconLabel;
    QLabel* fHeadLabel;
    QLabel* fTextLabel;
    QPushButton* fDisconnectButton;
    QPushButton* fReconnectButton;
    QPushButton* fAgainButton;
    QPushButton* fDismissButton;
    bool fIsWanted = false;
    QTimer fFarewellTimer;
    QTimer fRefreshTimer;
};
