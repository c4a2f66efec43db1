// SPDX-License-Identifier: MIT
#pragma once

#include <zo/export.h>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include <chrono>
#include <memory>
#include <string>

class ZoProxy;

/// How a broker reaches its robot. The defaults suit a robot on the same network.
struct ZoBrokerOptions
{
    std::string user;     ///< empty: the server's default user
    std::string password; ///< empty: none; appears in no message

    bool tls = false;
    bool tlsVerify = true;   ///< check the server's certificate and name
    std::string tlsCaFile;   ///< PEM file of authorities; empty: those of the system
    std::string tlsCertFile; ///< PEM client certificate, with tlsKeyFile; empty: none
    std::string tlsKeyFile;

    std::chrono::milliseconds connectTimeout{1000}; ///< look-up to first answer, each attempt
    /// How long a call waits, beside a round trip, for a silent robot. It does not end the link:
    /// that is cut after 2 s (or this, if longer) and four round trips without a byte.
    std::chrono::milliseconds exchangeTimeout{250};
    /// How long a call waits in all, however slowly it is answered (or exchangeTimeout, if longer).
    std::chrono::milliseconds callTimeout{2000};
    std::chrono::milliseconds keyListTimeout{2000};   ///< the same for a whole key list
    std::chrono::microseconds timeoutPerKey{20};      ///< added to both for each key
    std::chrono::milliseconds pingInterval{1000};     ///< how often an idle link is tried
    std::chrono::milliseconds reconnectWait{100};     ///< bound of the first random wait ...
    std::chrono::milliseconds reconnectWaitMax{3000}; ///< ... which doubles up to this one
};

/// State of the link to the robot, as told by `ZoBroker::linkStatus`.
struct ZoLinkStatus
{
    bool connected = false;
    std::chrono::system_clock::time_point since; ///< of the last change of `connected`
    std::string cause; ///< why it is down, with the robot's address; empty while connected
    /// Login or certificate were refused: it stays down until `ZoBroker::reconnect`.
    bool refused = false;
};

/// The middleware's hub in this process: the way to the robot's modules and to local ones.
///
/// With a robot it owns one link: a connection that one I/O thread looks up, opens, authenticates,
/// watches and, when lost, opens again by itself. The thread ends with the last of the broker and
/// the proxies it gave out. Every operation may be called from any thread.
///
/// The link does not try again when the robot refuses the login, or either side the other's
/// certificate: that would not help, and might lock the account. `reconnect` begins anew.
class ZO_EXPORT ZoBroker : public boost::enable_shared_from_this<ZoBroker>
{
public:
    /// A broker called `name`, connected to the robot's memory at `ip` (address or host name)
    /// and `port`. Waits for the connection and throws ZoError, naming address and cause, when
    /// there is none within `options.connectTimeout`.
    static boost::shared_ptr<ZoBroker> create(const std::string& name, const std::string& ip,
                                              int port, const ZoBrokerOptions& options = {});
    /// A broker without a robot: local modules only.
    static boost::shared_ptr<ZoBroker> create(const std::string& name);
    ~ZoBroker();
    ZoBroker(const ZoBroker&) = delete;
    ZoBroker& operator=(const ZoBroker&) = delete;

    const std::string& getName() const noexcept;

    /// A proxy to the module called `moduleName`: one registered here, else the robot's. The
    /// robot has one module, "ZoMemory"; without a robot that is the local memory. The proxy
    /// stays usable when the broker is gone. `reserved` is 0. Throws ZoError for an unknown name.
    boost::shared_ptr<ZoProxy> getProxy(const std::string& moduleName, int reserved);

    /// The module "ZoMemory" of this process: the one registered here, else a memory that the
    /// broker itself holds.
    boost::shared_ptr<ZoProxy> getLocalMemory();

    /// The broker itself.
    boost::shared_ptr<ZoBroker> getThis();

    /// Makes `module` the one that getProxy returns for `moduleName`, in place of any other.
    /// Throws ZoError for an empty name or module.
    void registerModule(const std::string& moduleName, boost::shared_ptr<ZoProxy> module);

    /// Whether the link to the robot is up; false without a robot.
    bool isConnected() const;
    ZoLinkStatus linkStatus() const;

    /// Drops the link to the robot, if it is up, and opens it with other `options`. Does not wait
    /// for the outcome, which linkStatus tells; `refused` is false when this returns. Calls under
    /// way fail. Throws ZoError, and leaves the link as it is, when a file that the options name
    /// is no good, and without a robot.
    void reconnect(const ZoBrokerOptions& options);

private:
    struct Parts;
    explicit ZoBroker(std::unique_ptr<Parts> parts);

    std::unique_ptr<Parts> fParts;
};
