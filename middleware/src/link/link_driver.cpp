// SPDX-License-Identifier: MIT
#include "link/link_driver.h"

#include "link/look_up.h"

#include <zo/error.h>

#include <boost/asio/post.hpp>

#include <algorithm>
#include <exception>
#include <future>
#include <random>
#include <utility>
#include <variant>

namespace zo {

namespace asio = boost::asio;

namespace {

// So many events are taken before time decides, lest a flood of them holds it up.
constexpr int mostAtOnce = 16;

} // namespace

LinkDriver::LinkDriver(const std::shared_ptr<const LinkSettings>& settings,
                       std::shared_ptr<TlsContext> tls, LinkState& state, LinkPulse& pulse,
                       LinkCompanion* companion)
    : fSettings(settings),
      fTls(std::move(tls)),
      fState(state),
      fPulse(pulse),
      fCompanion(companion),
      fMachine(settings, std::random_device()(), companion ? companion->pushes() : nullptr),
      fContext(std::make_shared<asio::io_context>(1)),
      fKeepRunning(fContext->get_executor())
{
}

void LinkDriver::run()
{
    fMachine.start(SteadyClock::now());
    while (!fContext->stopped()) {
        try {
            attend();
        } catch (const std::exception&) {
            fMachine.failed(SteadyClock::now());
        }
    }
    // A look-up may hold the context, and with it all handlers that wait there, for minutes.
    fMachine.stop(SteadyClock::now());
    act();
}

void LinkDriver::attend()
{
    act();
    sendDue();
    const Time due = wakeAt();
    if (SteadyClock::now() < due) {
        fContext->run_one_until(due);
    } else {
        poll();
        fMachine.woken(SteadyClock::now());
    }
}

LinkDriver::Time LinkDriver::wakeAt() const
{
    return fCompanion ? std::min(fMachine.wakeAt(), fCompanion->wakeAt()) : fMachine.wakeAt();
}

void LinkDriver::sendDue()
{
    while (const auto exchange = fCompanion ? fCompanion->due(SteadyClock::now()) : nullptr) {
        fMachine.call(SteadyClock::now(), exchange);
        act();
    }
}

void LinkDriver::poll()
{
    for (int i = 0; i < mostAtOnce && fContext->poll_one() > 0; ++i)
        act();
}

void LinkDriver::act()
{
    // First: whoever is told of an answer finds it counted.
    fPulse.set(fMachine.step(), fMachine.lastHeard(), fMachine.roundTrip());
    fPulse.note(SteadyClock::now(), fMachine.tally());
    while (const auto action = fMachine.nextAction())
        std::visit([this](const auto& what) { execute(what); }, *action);
}

void LinkDriver::stop()
{
    fContext->stop();
}

void LinkDriver::submit(const std::shared_ptr<Exchange>& exchange)
{
    asio::post(*fContext, [this, exchange] { fMachine.call(SteadyClock::now(), exchange); });
}

void LinkDriver::nudge()
{
    asio::post(*fContext, [] {});
}

void LinkDriver::abandon(const std::shared_ptr<Exchange>& exchange)
{
    asio::post(*fContext, [this, exchange] { fMachine.givenUp(SteadyClock::now(), exchange); });
}

void LinkDriver::reconnect(const std::shared_ptr<const LinkSettings>& settings,
                           const std::shared_ptr<TlsContext>& tls)
{
    decide([&] {
        fSettings = settings;
        fTls = tls;
        fMachine.reconnect(SteadyClock::now(), settings);
    });
}

void LinkDriver::disconnect()
{
    decide([this] { fMachine.disconnect(SteadyClock::now()); });
}

/// Does `step` on the I/O thread, and waits until the state tells what came of it.
template <class Step>
void LinkDriver::decide(Step step)
{
    std::promise<void> isTold;
    asio::post(*fContext, [this, &step, &isTold] {
        step();
        fState.set(fMachine.condition());
        isTold.set_value();
    });
    isTold.get_future().wait();
}

void LinkDriver::execute(const LinkAction::LookUp& action)
{
    const auto report = [this, number = action.number](const LookUpResult& found) {
        fMachine.lookedUp(SteadyClock::now(), number, found.addresses, found.problem);
    };
    try {
        lookUp(fContext, fSettings->hostToLookUp(*action.node), action.node->port, report);
    } catch (const std::exception& error) {
        fMachine.lookedUp(SteadyClock::now(), action.number, {}, error.what());
    }
}

void LinkDriver::execute(const LinkAction::Connect& action)
{
    const auto connection =
        std::make_shared<Connection>(*fContext, fTls, *fSettings, fMachine, action);
    fConnections.emplace(action.connection, connection);
    connection->open(action.address);
}

void LinkDriver::execute(const LinkAction::StartTls& action)
{
    fConnections.at(action.connection)->startTls();
}

void LinkDriver::execute(const LinkAction::Write& action)
{
    fConnections.at(action.connection)->write(action);
}

void LinkDriver::execute(const LinkAction::Close& action)
{
    const auto found = fConnections.find(action.connection);
    if (found == fConnections.end()) // it was never made: memory had run out
        return;
    found->second->close();
    fConnections.erase(found);
}

void LinkDriver::execute(const LinkAction::End& action)
{
    action.exchange->end(action.problem, action.sent);
}

void LinkDriver::execute(const LinkAction::Tell& action)
{
    if (fCompanion) // first: whoever finds the link up may ask it
        fCompanion->told(action.condition);
    fState.set(action.condition);
}

} // namespace zo
