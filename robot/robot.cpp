// SPDX-License-Identifier: MIT
#include "robot.h"

#include "private_server.h"
#include "publisher.h"
#include "ticks.h"

#include <kit/password_file.h>
#include <kit/program.h>
#include <kit/refusal.h>

#include <zo/zo.h>

#include <chrono>
#include <csignal>
#include <ctime>
#include <memory>
#include <stdexcept>

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
    TickLoop(Publisher& publisher, const ZoBroker& broker, double rate)
        : fPublisher(publisher), fBroker(broker), fRate(rate)
    {
    }

    double secondsToNextTick() const { return tickTime(fTick, fRate) - elapsed(); }

    /// Throws ZoError when the server refuses user, password or certificate.
    void doTick()
    {
        try {
            fPublisher.publish(tickTime(fTick, fRate));
            report("");
        } catch (const ZoError& error) {
            kit::throwIfRefused(fBroker.linkStatus());
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
        kit::tell("tarvek-robot", fInTrouble ? trouble + ". Trying again." : "publishing again.");
    }

    Publisher& fPublisher;
    const ZoBroker& fBroker;
    double fRate;
    std::chrono::steady_clock::time_point fStart = std::chrono::steady_clock::now();
    long long fTick = 1;
    bool fInTrouble = false;
};

/// Starts the robot's own server, which `arguments` lead to from then on.
std::unique_ptr<PrivateServer> startServer(RobotArguments& arguments)
{
    ZoBrokerOptions& options = arguments.connection.options;
    auto server = std::make_unique<PrivateServer>(arguments.port, options.password);
    arguments.connection.address = server->address();
    options.user = PrivateServer::fOwner;
    kit::wipe(options.password); // that of the readers
    options.password = server->ownersPassword();
    return server;
}

} // namespace

void runRobot(RobotArguments arguments)
{
    kit::tellWarning(arguments.connection, "tarvek-robot");
    const Signals signals;
    std::unique_ptr<PrivateServer> server;
    if (!arguments.connection.isGiven)
        server = startServer(arguments);
    const ZoAddress address = arguments.connection.address;

    const boost::shared_ptr<ZoBroker> broker =
        ZoBroker::create("TarvekRobot", address.host, address.port, arguments.connection.options);
    kit::wipe(arguments.connection.options.password); // the broker has its own
    Publisher publisher(robotKeys(arguments.keys, arguments.seed),
                        ZoMemoryProxy(broker->getProxy("ZoMemory", 0)));
    publisher.publish(0);
    kit::print((server ? "listening on " : "publishing to ") + address.toText() + "\n");

    TickLoop loop(publisher, *broker, arguments.rate);
    while (true) {
        const int signal = signals.waitForSignal(loop.secondsToNextTick());
        if (signal == 0)
            loop.doTick();
        else if (signal != SIGCHLD)
            return;
        else if (server && !server->isRunning())
            throw std::runtime_error("the robot's own server has ended");
    }
}
