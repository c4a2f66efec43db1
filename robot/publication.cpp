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

boost::shared_ptr<ZoBroker> brokerFor(kit::Connection& connection)
{
    const kit::WipedAtEnd wiped(connection.options.password); // the broker has its own
    return ZoBroker::create("TarvekRobot", connection.address.host, connection.address.port,
                            connection.options);
}

} // namespace

Publication::Publication(RobotArguments& arguments, const std::string& readersKey)
    : fServer(serverFor(arguments, readersKey)),
      fAddress(arguments.connection.address),
      fPrefix(arguments.connection.options.prefix),
      fBroker(brokerFor(arguments.connection))
{
}

Publication::~Publication() = default;

ZoMemoryProxy Publication::memory() const
{
    return ZoMemoryProxy(fBroker->getProxy("ZoMemory", 0));
}

std::string Publication::news() const
{
    const std::string where = fPrefix.empty() ? "" : " behind " + fPrefix;
    return fServer ? fServer->news() : "publishing to " + fAddress.toText() + where + "\n";
}

bool Publication::endsOn(int signal)
{
    if (signal == SIGCHLD && fServer && !fServer->isRunning())
        throw std::runtime_error("the robot's own server has ended");
    return signal != SIGCHLD;
}
