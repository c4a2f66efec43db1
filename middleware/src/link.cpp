#include "link.h"

#include "link_io.h"
#include "quiet_thread.h"

#include <zo/error.h>

#include <boost/system/system_error.hpp>

#include <algorithm>

namespace {

using std::chrono::milliseconds;

// Far beyond any use, and far from overflow when added to a clock.
constexpr milliseconds longest = std::chrono::hours(24);

ZoBrokerOptions confined(ZoBrokerOptions options)
{
    for (milliseconds* const duration :
         {&options.connectTimeout, &options.exchangeTimeout, &options.keyListTimeout,
          &options.pingInterval, &options.reconnectWait, &options.reconnectWaitMax})
        *duration = std::clamp(*duration, milliseconds(1), longest);
    options.timeoutPerKey = std::clamp(options.timeoutPerKey, std::chrono::microseconds(0),
                                       std::chrono::microseconds(std::chrono::seconds(1)));
    return options;
}

// The I/O thread ends an attempt in time; this bounds the wait should it be starved.
constexpr milliseconds grace{1000};

} // namespace

Link::Link(const std::string& host, int port, const ZoBrokerOptions& options)
    : fPeer(host, port, options.password),
      fOptions(confined(options)),
      fState(fPeer.says("no connection within " + std::to_string(fOptions.connectTimeout.count()) +
                        " ms"))
{
    try {
        fIo = std::make_unique<LinkIo>(fPeer, fOptions, fState);
    } catch (const boost::system::system_error& error) {
        throw fPeer.error(error.what());
    } catch (const ZoError& error) {
        throw fPeer.error(error.toString());
    }
    fThread = startQuietThread([io = fIo.get()] { io->run(); });
    try {
        fState.waitForFirstAttempt(SteadyClock::now() + fOptions.connectTimeout + grace);
    } catch (...) {
        end();
        throw;
    }
}

Link::~Link()
{
    end();
}

void Link::end()
{
    fIo->stop();
    fThread.join();
}

void Link::run(const std::shared_ptr<Exchange>& exchange)
{
    fState.throwIfDown();
    fIo->submit(exchange);
    if (exchange->waitUntilDone())
        return;
    fIo->abandon(exchange);
    throw fPeer.error(exchange->lateness());
}

Deadline Link::deadlineFor(int keys) const
{
    return Deadline::after(SteadyClock::now(),
                           fOptions.exchangeTimeout + fOptions.timeoutPerKey * keys);
}

ZoError Link::refusal(const std::string& command, const std::string& text) const
{
    return fPeer.error("refuses " + command + ": " + fPeer.quote(text));
}
