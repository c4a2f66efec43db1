// SPDX-License-Identifier: MIT
#include "robot.h"

#include "private_file.h"
#include "private_server.h"
#include "publisher.h"
#include "random_password.h"
#include "ticks.h"

#include <kit/password_file.h>
#include <kit/program.h>
#include <kit/refusal.h>

#include <zo/zo.h>

#include <chrono>
#include <csignal>
#include <ctime>
#include <optional>
#include <stdexcept>
#include <string>

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
            startOverAfterALoss();
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

    /// The server that the link came back to may be another one, or have been emptied.
    void startOverAfterALoss()
    {
        const auto upSince = fBroker.linkStatus().since;
        if (upSince != fUpSince)
            fPublisher.startOver();
        fUpSince = upSince;
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
    std::chrono::system_clock::time_point fUpSince = fBroker.linkStatus().since;
    long long fTick = 1;
    bool fInTrouble = false;
};

/// The robot's own server, and the password that its readers give.
class OwnServer
{
public:
    /// `arguments` lead to the server from then on, as its owner.
    explicit OwnServer(RobotArguments& arguments)
    {
        ZoBrokerOptions& options = arguments.connection.options;
        if (options.password.empty() && !arguments.open)
            makePassword(options.password);
        fServer.emplace(arguments.port, options.password);
        arguments.connection.address = fServer->address();
        options.user = PrivateServer::fOwner;
        kit::wipe(options.password); // that of the readers
        options.password = fServer->ownersPassword();
    }

    bool isRunning() { return fServer->isRunning(); }

    /// What readers have to know.
    std::string news() const
    {
        const std::string password = fFile ? "password in " + fFile->path() + "\n" : "";
        return password + "listening on " + fServer->address().toText() + "\n";
    }

private:
    void makePassword(std::string& password)
    {
        password = randomPassword();
        fFile.emplace("password", password + "\n");
    }

    std::optional<PrivateFile> fFile; ///< none: the password is not of our making
    std::optional<PrivateServer> fServer;
};

std::string newsOf(const ZoAddress& server)
{
    return "publishing to " + server.toText() + "\n";
}

} // namespace

void runRobot(RobotArguments arguments)
{
    kit::tellWarning("tarvek-robot", arguments.connection.warning);
    const Signals signals;
    std::optional<OwnServer> server;
    if (!arguments.connection.isGiven)
        server.emplace(arguments);
    const ZoAddress address = arguments.connection.address;

    const boost::shared_ptr<ZoBroker> broker =
        ZoBroker::create("TarvekRobot", address.host, address.port, arguments.connection.options);
    kit::wipe(arguments.connection.options.password); // the broker has its own
    Publisher publisher(robotKeys(arguments.keys, arguments.seed),
                        ZoMemoryProxy(broker->getProxy("ZoMemory", 0)));
    publisher.publish(0);
    kit::print(server ? server->news() : newsOf(address));

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
