#include "link_io.h"

#include "status_sink.h"
#include "wire/request.h"

#include <zo/error.h>

#include <boost/asio/post.hpp>

#include <algorithm>
#include <utility>

namespace asio = boost::asio;

namespace {

bool isNoPermission(const std::string& text)
{
    return text.compare(0, 6, "NOPERM") == 0;
}

} // namespace

LinkIo::LinkIo(const Peer& peer, const ZoBrokerOptions& options, LinkState& state)
    : fPeer(peer),
      fOptions(options),
      fState(state),
      fTls(makeTlsContext(options)),
      fContext(std::make_shared<asio::io_context>(1)),
      fKeepRunning(fContext->get_executor()),
      fAttemptTimer(*fContext),
      fWatchTimer(*fContext),
      fWait(options.reconnectWait),
      fRandom(static_cast<unsigned>(SteadyClock::now().time_since_epoch().count()))
{
}

LinkIo::~LinkIo()
{
    // Handlers that wait in the context hold the connection, and a look-up may hold the context
    // for minutes: the socket must not stay open so long.
    closeConnection();
}

void LinkIo::run()
{
    asio::post(*fContext, [this] { attempt(); });
    while (!fContext->stopped())
        guardedRun();
}

// Handlers throw only when memory runs out. The link is then given up, and tried again.
void LinkIo::guardedRun()
{
    try {
        if (std::exchange(fHasFailed, false))
            goDown("out of memory");
        fContext->run();
    } catch (const std::exception&) {
        fHasFailed = true;
    }
}

void LinkIo::stop()
{
    fContext->stop();
}

void LinkIo::submit(const std::shared_ptr<Exchange>& exchange)
{
    asio::post(*fContext, [this, exchange] { enqueue(exchange); });
}

void LinkIo::abandon(const std::shared_ptr<Exchange>& exchange)
{
    asio::post(*fContext, [this, exchange] { giveUp(exchange); });
}

void LinkIo::attempt()
{
    fIsTrying = true;
    fAttemptTimer.expires_after(fOptions.connectTimeout);
    fAttemptTimer.async_wait([this](const boost::system::error_code& error) {
        if (!error)
            attemptTimedOut();
    });
    if (!fIsLookingUp) // else an earlier look-up still hangs: its answer serves this attempt too
        startLookUp();
}

void LinkIo::startLookUp()
{
    const auto useResult = [this](const LookUpResult& found) {
        fIsLookingUp = false;
        if (fIsTrying)
            connectTo(found);
    };
    try {
        lookUp(fContext, fPeer.host(), fPeer.port(), useResult);
        fIsLookingUp = true;
    } catch (const ZoError& error) {
        goDown(error.toString());
    }
}

void LinkIo::connectTo(const LookUpResult& found)
{
    if (found.endpoints.empty()) {
        goDown(found.problem);
        return;
    }
    fConnection = std::make_shared<Connection>(
        *fContext, fTls.get(), fPeer.host(),
        Connection::Listener{[this] { greet(); }, [this] { onExchanged(); },
                             [this](const ReplyProblem& problem) { onLost(problem); }});
    fConnection->open(found.endpoints);
}

void LinkIo::greet()
{
    auto bytes = std::make_shared<std::string>();
    int replies = 1;
    if (!fOptions.user.empty() || !fOptions.password.empty()) {
        ++replies;
        if (fOptions.user.empty())
            appendCommand({"AUTH", fOptions.password}, *bytes);
        else
            appendCommand({"AUTH", fOptions.user, fOptions.password}, *bytes);
    }
    appendCommand({"PING"}, *bytes);
    fGreeting = std::make_shared<StatusSink>("PING");
    fConnection->send(std::make_shared<Exchange>("PING", bytes, replies, fGreeting,
                                                 Deadline{SteadyClock::time_point::max(), {}}));
}

void LinkIo::checkGreeting()
{
    const auto greeting = std::move(fGreeting);
    const auto& answers = greeting->answers();
    if (answers.size() == 2 && answers.front().isError) {
        goDown("user or password refused: " + fPeer.quote(answers.front().text));
        return;
    }
    // A user without the right to PING has a working link all the same.
    const StatusSink::Answer& ping = answers.back();
    if (ping.isError ? !isNoPermission(ping.text) : ping.text != "PONG")
        goDown("not ready: " + fPeer.quote(ping.text));
    else
        goUp();
}

void LinkIo::attemptTimedOut()
{
    if (fIsTrying)
        goDown("no connection within " + std::to_string(fOptions.connectTimeout.count()) +
               " ms, while " + (fConnection ? fConnection->stage() : "looking up the host"));
}

void LinkIo::goUp()
{
    fIsTrying = false;
    fIsUp = true;
    fAttemptTimer.cancel();
    fUpSince = fLastUse = SteadyClock::now();
    fState.setUp();
    watchIdleLink();
    sendNext();
}

/// A failed attempt, or the end of a link that was up.
void LinkIo::goDown(const std::string& problem)
{
    const std::string cause = fPeer.says(problem);
    fIsTrying = false;
    fIsUp = false;
    fState.setDown(cause);
    failWaiting(cause);
    closeConnection();
    retryLater();
}

void LinkIo::failWaiting(const std::string& cause)
{
    if (fConnection && fConnection->exchange())
        fConnection->exchange()->fail(cause);
    for (const auto& exchange : fQueue)
        exchange->fail(cause);
    fQueue.clear();
}

void LinkIo::closeConnection()
{
    fAttemptTimer.cancel();
    fWatchTimer.cancel();
    fGreeting.reset();
    fPing.reset();
    if (fConnection)
        fConnection->close();
    fConnection.reset();
}

void LinkIo::retryLater()
{
    std::uniform_int_distribution<std::chrono::milliseconds::rep> upTo(0, fWait.count());
    const std::chrono::milliseconds wait(upTo(fRandom));
    fWait = std::min(2 * fWait, fOptions.reconnectWaitMax);
    fAttemptTimer.expires_after(wait);
    fAttemptTimer.async_wait([this](const boost::system::error_code& error) {
        if (!error)
            attempt();
    });
}

void LinkIo::onExchanged()
{
    fLastUse = SteadyClock::now();
    if (fPing) {
        fPing.reset();
        watchIdleLink();
    }
    if (fGreeting)
        checkGreeting();
    else
        sendNext();
}

void LinkIo::onLost(const ReplyProblem& problem)
{
    const std::string text = problem.sent.empty()
                                 ? problem.text
                                 : problem.text + ": \"" + fPeer.quote(problem.sent) + "\"";
    if (fIsUp)
        loseLink(text);
    else if (fIsTrying)
        goDown(text);
}

void LinkIo::enqueue(const std::shared_ptr<Exchange>& exchange)
{
    if (!fIsUp) {
        exchange->fail(fState.status().cause);
        return;
    }
    fQueue.push_back(exchange);
    sendNext();
}

void LinkIo::sendNext()
{
    while (fIsUp && !fConnection->exchange() && !fQueue.empty()) {
        const auto next = std::move(fQueue.front());
        fQueue.pop_front();
        if (next->deadline() > SteadyClock::now())
            fConnection->send(next);
    }
}

void LinkIo::giveUp(const std::shared_ptr<Exchange>& exchange)
{
    fQueue.erase(std::remove(fQueue.begin(), fQueue.end(), exchange), fQueue.end());
    if (fIsUp && fConnection->exchange() == exchange)
        loseLink(exchange->lateness());
}

/// The link was up. The first new attempt is made at once, unless the link had only just come
/// up: a server that greets and then fails must not be besieged.
void LinkIo::loseLink(const std::string& problem)
{
    const bool wasSteady = SteadyClock::now() - fUpSince >= fOptions.pingInterval;
    if (wasSteady)
        fWait = std::chrono::milliseconds(0);
    goDown(problem);
    if (wasSteady)
        fWait = fOptions.reconnectWait;
}

void LinkIo::watchIdleLink()
{
    fWatchTimer.expires_at(fPing ? fPing->deadline() : fLastUse + fOptions.pingInterval);
    fWatchTimer.async_wait([this](const boost::system::error_code& error) {
        if (!error)
            onWatch();
    });
}

void LinkIo::onWatch()
{
    if (!fIsUp)
        return;
    const auto now = SteadyClock::now();
    if (fPing && fPing->deadline() <= now) {
        loseLink(fPing->lateness());
        return;
    }
    if (fConnection->exchange())
        fLastUse = now; // its caller watches over it
    else if (fLastUse + fOptions.pingInterval <= now)
        sendPing();
    watchIdleLink();
}

void LinkIo::sendPing()
{
    static const auto bytes = std::make_shared<const std::string>(encodeCommand({"PING"}));
    fPing =
        std::make_shared<Exchange>("PING", bytes, 1, std::make_shared<StatusSink>("PING"),
                                   Deadline::after(SteadyClock::now(), fOptions.exchangeTimeout));
    fConnection->send(fPing);
}
