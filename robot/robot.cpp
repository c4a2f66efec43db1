// SPDX-License-Identifier: MIT
#include "robot.h"

#include "private_server.h"
#include "publisher.h"
#include "ticks.h"

#include <zo/zo.h>

#include <chrono>
#include <csignal>
#include <ctime>
#include <memory>
#include <ostream>

namespace {

/// The signals that end the robot, and the one that tells of its server's end. Blocked here and in
/// every thread made later, so that only `waitForSignal` gets them.
class Signals
{
public:
    Signals()
    {
        ::sigemptyset(&fSet);
        for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGCHLD})
            ::sigaddset(&fSet, signal);
        ::pthread_sigmask(SIG_BLOCK, &fSet, nullptr);
    }

    /// The next signal within `seconds`, or 0.
    int waitForSignal(double seconds) const
    {
        const double whole = seconds > 0 ? seconds : 0;
        timespec time{};
        time.tv_sec = static_cast<time_t>(whole);
        time.tv_nsec = static_cast<long>((whole - static_cast<double>(time.tv_sec)) * 1e9);
        const int signal = ::sigtimedwait(&fSet, nullptr, &time);
        return signal > 0 ? signal : 0;
    }

private:
    sigset_t fSet{};
};

/// Publishes tick after tick, and tells once for each outage that and why nothing arrives.
class TickLoop
{
public:
    TickLoop(Publisher& publisher, double rate, std::ostream& err)
        : fPublisher(publisher), fRate(rate), fErr(err)
    {
    }

    double secondsToNextTick() const { return tickTime(fTick, fRate) - elapsed(); }

    void doTick()
    {
        try {
            fPublisher.publish(tickTime(fTick, fRate));
            report("");
        } catch (const ZoError& error) {
            report(error.toString());
        }
        fTick = nextTick(fTick, elapsed(), fRate);
    }

private:
    double elapsed() const
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - fStart).count();
    }

    void report(const std::string& trouble)
    {
        if (trouble.empty() == !fInTrouble)
            return;
        fInTrouble = !trouble.empty();
        // One write, so that who reads along never sees half a line.
        fErr << "tarvek-robot: " +
                    (fInTrouble ? trouble + ". Trying again." : "publishing again.") + "\n"
             << std::flush;
    }

    Publisher& fPublisher;
    double fRate;
    std::ostream& fErr;
    std::chrono::steady_clock::time_point fStart = std::chrono::steady_clock::now();
    long long fTick = 1;
    bool fInTrouble = false;
};

} // namespace

int runRobot(const RobotArguments& arguments, std::ostream& out, std::ostream& err)
{
    const Signals signals;
    std::unique_ptr<PrivateServer> server;
    if (!arguments.server)
        server = std::make_unique<PrivateServer>(arguments.port);
    const ZoAddress address = server ? server->address() : *arguments.server;

    const boost::shared_ptr<ZoBroker> broker =
        ZoBroker::create("TarvekRobot", address.host, address.port);
    Publisher publisher(robotKeys(arguments.keys, arguments.seed),
                        ZoMemoryProxy(broker->getProxy("ZoMemory", 0)));
    publisher.publish(0);
    out << (server ? "listening on " : "publishing to ") << address.toText() << std::endl;

    TickLoop loop(publisher, arguments.rate, err);
    while (true) {
        const int signal = signals.waitForSignal(loop.secondsToNextTick());
        if (signal == 0)
            loop.doTick();
        else if (signal != SIGCHLD)
            return 0;
        else if (server && !server->isRunning())
            throw std::runtime_error("the robot's own server has ended");
    }
}
