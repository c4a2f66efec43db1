// SPDX-License-Identifier: MIT
#include "link/link.h"

#include "link/link_companion.h"
#include "link/link_driver.h"
#include "link/quiet_thread.h"

#include <zo/error.h>

#include <algorithm>
#include <exception>
#include <utility>

namespace zo {

namespace {

// The I/O thread ends attempts and calls in time; these bound the waits should it be starved.
constexpr std::chrono::milliseconds attemptGrace{1000};
constexpr std::chrono::milliseconds callGrace{250};

/// What `make` makes; whatever it throws becomes an error about the robot of `settings`.
template <class Make>
auto madeFor(const LinkSettings& settings, Make make)
{
    try {
        return make();
    } catch (const std::exception& error) {
        throw settings.peer.error(error.what());
    }
}

} // namespace

Link::Link(std::shared_ptr<const LinkSettings> settings, std::shared_ptr<LinkCompanion> companion)
    : fSettings(std::move(settings)),
      fState(sharedText(fSettings->peer.says("no connection within " +
                                             inMilliseconds(fSettings->options.connectTimeout)))),
      fCompanion(std::move(companion))
{
    fDriver = madeFor(*fSettings, [this] {
        return std::make_unique<LinkDriver>(fSettings, makeTlsContext(fSettings->options), fState,
                                            fPulse, fCompanion.get());
    });
    fThread = startQuietThread([driver = fDriver.get()] { driver->run(); });
}

Link::~Link()
{
    fDriver->stop();
    fThread.join();
}

void Link::beginAnewIfDown()
{
    const std::lock_guard<std::mutex> lock(fBeginning);
    if (fState.hasFailed())
        begin(settings());
}

// Each node that it leads to may take its time.
void Link::waitUntilOpen()
{
    const auto current = settings();
    const bool isSearched = current->slot() || !current->options.sentinel.empty();
    const int nodes = isSearched || current->nodes.size() > 1 ? OwnerSearch::fMostAsked : 1;
    waitUntilOpen(SteadyClock::now() + nodes * current->options.connectTimeout + attemptGrace);
}

void Link::waitUntilOpen(SteadyClock::time_point deadline)
{
    fState.waitForFirstAttempt(deadline);
}

void Link::reconnect(const std::shared_ptr<const LinkSettings>& settings)
{
    const std::lock_guard<std::mutex> lock(fBeginning);
    // Each of those that share it may ask: a login that is refused once is enough.
    if (!fState.isOpening() || !isSameWay(*settings, *this->settings()))
        begin(settings);
}

void Link::disconnect()
{
    const std::lock_guard<std::mutex> lock(fBeginning);
    fDriver->disconnect();
}

// The driver waits for its thread, which may wait for whoever asks for the settings.
void Link::begin(const std::shared_ptr<const LinkSettings>& settings)
{
    const auto tls = madeFor(*settings, [&] { return makeTlsContext(settings->options); });
    fDriver->reconnect(settings, tls);
    const std::lock_guard<std::mutex> lock(fMutex);
    fSettings = settings;
}

std::shared_ptr<const LinkSettings> Link::settings() const
{
    const std::lock_guard<std::mutex> lock(fMutex);
    return fSettings;
}

ZoLinkStatus Link::status() const
{
    ZoLinkStatus status = fState.status();
    status.step = fPulse.step();
    const RecentTraffic traffic = fPulse.traffic();
    const auto now = SteadyClock::now();
    const TrafficRates rates = traffic.rates(now);
    status.answersPerSecond = rates.answers;
    status.bytesReceivedPerSecond = rates.received;
    status.bytesSentPerSecond = rates.sent;
    if (traffic.tally().answers > 0)
        status.answerAge =
            std::chrono::round<std::chrono::milliseconds>(now - traffic.tally().newestAnswer);
    status.roundTrip = fPulse.knownRoundTrip();
    if (fCompanion)
        status.following = fCompanion->following(now);
    return status;
}

void Link::run(const std::shared_ptr<Call>& call)
{
    fState.throwIfDown();
    fDriver->submit(call);
    if (call->waitUntilDone(call->deadline().at + callGrace))
        return;
    fDriver->abandon(call);
    throw error(call->lateness());
}

void Link::nudge()
{
    fDriver->nudge();
}

Deadline Link::deadlineFor(int keys) const
{
    const auto current = settings();
    const ZoBrokerOptions& options = current->options;
    const auto allowed = std::max(options.callTimeout, options.exchangeTimeout);
    return Deadline::after(SteadyClock::now(), allowed + options.timeoutPerKey * keys);
}

ZoError Link::error(const std::string& problem) const
{
    return settings()->peer.error(problem);
}

ZoError Link::refusal(const std::string& command, const std::string& text) const
{
    return settings()->refusal(command, text);
}

} // namespace zo
