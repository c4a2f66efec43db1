// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"

#include <zo/broker.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <functional>
#include <map>

/// What a window knows about its robot.
struct ConnectionState
{
    bool connected = false;
    bool wasLost = false; ///< was down before, in this window
    QDateTime since;      ///< local time of the last change of `connected`
    QString cause;        ///< why it is down; empty while connected
    bool refused = false; ///< for good: nothing tries again before ConnectionMonitor::reconnect
};

/// Watches the links of one window and tells when its robot is lost and back. It asks each link
/// for its state, which never blocks. The robot counts as lost when any of the links is down for
/// longer than `fGrace`: a link that is back before that has cost nobody a value. A link that was
/// refused does not come back by itself, so the robot is lost at once.
class ConnectionMonitor : public QObject
{
    Q_OBJECT

public:
    static constexpr int fPollInterval = 100;     ///< ms
    static constexpr int fGrace = 300;            ///< ms
    static constexpr int fMeasureInterval = 1000; ///< ms

    /// A link, as a broker has it.
    struct Link
    {
        std::function<ZoLinkStatus()> status;
        std::function<void(const ZoBrokerOptions& options)> reconnect;
    };

    explicit ConnectionMonitor(QObject* parent = nullptr);

    /// Starts watching one more link; returns a number to stop it with.
    int watch(Link link);
    int watch(const boost::shared_ptr<ZoBroker>& broker);
    void stopWatching(int number);

    /// Opens every link anew, as `settings` say, but for the address. Throws what
    /// ZoBroker::reconnect does.
    void reconnect(const ConnectionSettings& settings);

    const ConnectionState& state() const { return fState; }
    /// Of the links that are up, the one over which most answers come; one that is down when none
    /// is up. Panels with the same options share a link: to add them up would count it twice.
    ZoLinkStatus busiest() const;

signals:
    /// The robot is lost: once per outage.
    void lost();
    /// `state()` is another one.
    void changed();
    /// Once a second: `link` is the busiest one.
    void measured(const ZoLinkStatus& link);

private slots:
    void xPoll();
    void xMeasure();

private:
    ZoLinkStatus worst() const;
    bool isLost() const { return !fState.connected && fState.wasLost; }
    void setConnected(const ZoLinkStatus& status);
    void setDown(const ZoLinkStatus& status);

    std::map<int, Link> fLinks;
    int fLastNumber = 0;
    QTimer fTimer;
    QTimer fMeasureTimer;
    QElapsedTimer fDownFor; ///< invalid while all links are up
    ConnectionState fState;
};
