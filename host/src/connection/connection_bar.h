// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_monitor.h"

#include <QWidget>

class QLabel;

/// What a window says about its connection. `address` is the robot's, `now` the present time.
namespace connection_text {
/// A few words: "Connected since 12:03:02".
QString brief(const ConnectionState& state, const QDateTime& now);
/// A sentence: where, why not, and what to do.
QString detail(const ConnectionState& state, const QString& address);
} // namespace connection_text

/// The part of a window's status bar that always shows the state of its connection.
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
    /// Shows `text` in place of the sentence about the connection for some seconds.
    void note(const QString& text);

private slots:
    void xRefresh();
    void xEndNote();

private:
    void setDetail(const QString& text);

    QString fAddress;
    ConnectionState fState;
    QLabel* fDetailLabel;
    QLabel* fIconLabel;
    QLabel* fBriefLabel;
    QTimer fNoteTimer; ///< runs while a note is shown
    QTimer fRefreshTimer;
};
