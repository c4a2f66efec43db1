#pragma once

#include "connection.h"
#include "link_state.h"
#include "look_up.h"
#include "peer.h"

#include <zo/broker.h>

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <deque>
#include <memory>
#include <random>
#include <string>

class StatusSink;

/// What the I/O thread of a link does: opens the connection, watches it, sends the exchanges one
/// after the other, and opens it again when it is lost.
class LinkIo
{
public:
    LinkIo(const Peer& peer, const ZoBrokerOptions& options, LinkState& state);
    ~LinkIo();
    LinkIo(const LinkIo&) = delete;
    LinkIo& operator=(const LinkIo&) = delete;

    /// The body of the I/O thread, until `stop`.
    void run();

    // From any thread:
    void stop();
    void submit(const std::shared_ptr<Exchange>& exchange);
    /// The caller of `exchange` has given up: a reply under way must never reach another.
    void abandon(const std::shared_ptr<Exchange>& exchange);

private:
    void guardedRun();

    void attempt();
    void startLookUp();
    void connectTo(const LookUpResult& found);
    void greet();
    void checkGreeting();
    void attemptTimedOut();
    void goUp();
    void goDown(const std::string& problem);
    void loseLink(const std::string& problem);
    void closeConnection();
    void failWaiting(const std::string& cause);
    void retryLater();

    void onExchanged();
    void onLost(const ReplyProblem& problem);

    void enqueue(const std::shared_ptr<Exchange>& exchange);
    void giveUp(const std::shared_ptr<Exchange>& exchange);
    void sendNext();

    void watchIdleLink();
    void onWatch();
    void sendPing();

    const Peer& fPeer;
    const ZoBrokerOptions& fOptions;
    LinkState& fState;
    std::unique_ptr<boost::asio::ssl::context> fTls;

    // Also held by look-ups that outlive the link.
    std::shared_ptr<boost::asio::io_context> fContext;
    boost::asio::executor_work_guard<boost::asio::io_context::executor_type> fKeepRunning;
    boost::asio::steady_timer fAttemptTimer;
    boost::asio::steady_timer fWatchTimer;

    std::shared_ptr<Connection> fConnection;
    std::deque<std::shared_ptr<Exchange>> fQueue;
    std::shared_ptr<StatusSink> fGreeting;
    std::shared_ptr<Exchange> fPing;
    bool fIsTrying = false;
    bool fIsUp = false;
    bool fIsLookingUp = false;
    bool fHasFailed = false;
    SteadyClock::time_point fUpSince;
    SteadyClock::time_point fLastUse;
    std::chrono::milliseconds fWait;
    std::minstd_rand fRandom;
};
