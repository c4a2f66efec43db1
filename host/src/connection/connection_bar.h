// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_state.h"

#include <zo/link_status.h>

#include <QTimer>
#include <QWidget>

class ElidedLabel;
class QLabel;

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

private slots:
    void xRefresh();
    void xEndNote();

private:
    QString fAddress;
    ConnectionState fState;
    ElidedLabel* fDetailLabel;
    QLabel* fTrafficLabel;
    QLabel* fIconLabel;
    QLabel* fBriefLabel;
    QTimer fNoteTimer; ///< runs while a note is shown
    QTimer fRefreshTimer;
};
