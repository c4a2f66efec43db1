// SPDX-License-Identifier: MIT
#pragma once

#include "connection/connection_settings.h"
#include "connection/loss_limit.h"
#include "connection/watched_link.h"

#include <QObject>
#include <QTimer>
#include <QVector>

#include <functional>
#include <vector>

/// Watches the links of one window, each by itself, and tells what is to be shown, and who has lost
/// the robot. It asks each link for its state, which never blocks; users that share a link are
/// served by one.
class ConnectionMonitor : public QObject
{
    Q_OBJECT

public:
    static constexpr int fPollInterval = 100;     ///< ms
    static constexpr int fMeasureInterval = 1000; ///< ms

    using Link = MonitoredLink;
    using User = WatchedLink::User;

    /// Links to be opened anew.
    enum class Which
    {
        All,
        Down,  ///< those that are down
        Wanted ///< those that are up, or try again by themselves
    };

    explicit ConnectionMonitor(QObject* parent = nullptr);

    /// Starts watching a link for one more user; returns the user's number.
    int watch(const Link& link, User user = User::Window);
    int watch(const boost::shared_ptr<ZoBroker>& broker, User user = User::Window);
    void stopWatching(int number);
    /// Whether the link of this user is lost.
    bool isLost(int number) const;

    /// `remark` is asked, as long as a link is down, what else may tell why.
    void setRemark(const std::function<QString()>& remark) { fRemark = remark; }

    /// How long a link that mends itself may be down before it is lost.
    void setLimit(LossRule::Limit limit);
    LossRule::Limit limit() const { return fLimit; }

    /// Opens links anew, each once, as `settings` say, but for the address. Throws ZoError, and
    /// leaves all as they are, when a file of theirs cannot be used.
    void reconnect(const ConnectionSettings& settings, Which which = Which::All);
    /// Closes every link until `reconnect`.
    void disconnect();
    /// The user knows that panels have stopped: `state()` counts them no longer.
    void forgetStopped();

    const ConnectionState& state() const { return fState; }
    /// Of the link of this user, as it was at the last look.
    ConnectionState stateOf(int number) const;
    /// Of each link, as it was at the last look.
    QVector<ConnectionState> links() const;
    /// Of the links that are up, the one over which most answers come; one that is down when none
    /// is up.
    ZoLinkStatus busiest() const;

signals:
    /// The link of this user is lost: once per outage.
    void lost(int number);
    /// `state()` is another one.
    void changed();
    /// Once a second: `link` is the busiest one.
    void measured(const ZoLinkStatus& link);

private slots:
    void xPoll();
    void xMeasure();

private:
    WatchedLink& linkFor(const Link& link);
    ConnectionState present() const;
    void show(const ConnectionState& state);

    std::vector<WatchedLink> fLinks;
    std::function<QString()> fRemark; ///< may be empty
    LossRule::Limit fLimit = defaultLossLimit;
    int fLastNumber = 0;
    QTimer fTimer;
    QTimer fMeasureTimer;
    ConnectionState fState;
};
