// SPDX-License-Identifier: MIT
#include "publication.h"

#include "private_file.h"
#include "private_server.h"
#include "random_password.h"

#include <kit/password_file.h>

#include <csignal>
#include <optional>
#include <stdexcept>

/// The robot's own server, and the password that its readers give.
class OwnServer
{
public:
    /// `arguments` lead to the server from then on, as its owner.
    OwnServer(RobotArguments& arguments, const std::string& readersKey)
    {
        ZoBrokerOptions& options = arguments.connection.options;
        if (options.password.empty() && !arguments.open)
            makePassword(options.password);
        fServer.emplace(arguments.port, options.password, kit::freeLoopbackPort,
                        readersKey.empty() ? "" : options.prefix + readersKey);
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

namespace {

std::unique_ptr<OwnServer> serverFor(RobotArguments& arguments, const std::string& readersKey)
{
    return arguments.connection.isGiven ? nullptr
                                        : std::make_unique<OwnServer>(arguments, readersKey);
}

std::vector<boost::shared_ptr<ZoBroker>> brokersFor(kit::Connection& connection,
                                                    const std::vector<std::string>& prefixes)
{
    const kit::WipedAtEnd wiped(connection.options.password); // the brokers have their own
    std::vector<boost::shared_ptr<ZoBroker>> brokers;
    for (const std::string& prefix : prefixes) {
        connection.options.prefix = prefix;
        brokers.push_back(ZoBroker::create("TarvekRobot", connection.address.host,
                                           connection.address.port, connection.options));
    }
    return brokers;
}

} // namespace

Publication::Publication(RobotArguments& arguments, const std::string& readersKey)
    : fServer(serverFor(arguments, readersKey)),
      fAddress(arguments.connection.address),
      fPrefixes(robotPrefixes(arguments)),
      fBrokers(brokersFor(arguments.connection, fPrefixes))
{
}

Publication::~Publication() = default;

ZoMemoryProxy Publication::memory(std::size_t robot) const
{
    return ZoMemoryProxy(fBrokers[robot]->getProxy("ZoMemory", 0));
}

std::string Publication::news() const
{
    std::string where = fPrefixes.front().empty() ? "" : " behind " + fPrefixes.front();
    if (robots() > 1)
        where += " to " + fPrefixes.back();
    return fServer ? fServer->news() : "publishing to " + fAddress.toText() + where + "\n";
}

bool Publication::endsOn(int signal)
{
    if (signal == SIGCHLD && fServer && !fServer->isRunning())
        throw std::runtime_error("the robot's own server has ended");
    return signal != SIGCHLD;
}
