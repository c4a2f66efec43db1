// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_monitor.h"

#include <QWidget>

class QLabel;
class QPushButton;

/// What a window says about its connection in a few words, "Connected since 12:03:02". `now` is the
/// present time.
QString connectionBrief(const ConnectionState& state, const QDateTime& now);
/// What it says in a sentence: where, why not, and what to do. `address` is the robot's.
QString connectionDetail(const ConnectionState& state, const QString& address);

/// The part of a window's status bar that always shows the state of its connection, and what goes
/// over it.
class ConnectionBar : public QWidget
{
    Q_OBJECT

public:
    /// In ms.
    struct Times
    {
        int note = 10000;    ///< that a note is shown
        int refresh = 60000; ///< yesterday's times get their date
    };

    ConnectionBar(const QString& address, QWidget* parent);
    ConnectionBar(const QString& address, const Times& times, QWidget* parent);

    void showState(const ConnectionState& state);
    /// Shows what goes over the link. Paints nothing when the texts are the same as before.
    void showTraffic(const ZoLinkStatus& link);
    /// Shows `text` in place of the sentence about the connection for some seconds.
    void note(const QString& text);

signals:
    /// The user wants to try again what the robot refused.
    void connectAgainRequested();

private slots:
    void xRefresh();
    void xEndNote();

private:
    void setDetail(const QString& text);

    QString fAddress;
    ConnectionState fState;
    QLabel* fDetailLabel;
    QLabel* fTrafficLabel;
    QLabel* fIconLabel;
    QLabel* fBriefLabel;
    QPushButton* fAgainButton; ///< there as long as nothing else would bring the robot back
    QTimer fNoteTimer;         ///< runs while a note is shown
    QTimer fRefreshTimer;
};
