// SPDX-License-Identifier: MIT
#pragma once

#include <zo/broker_options.h>
#include <zo/export.h>
#include <zo/link_status.h>

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include <memory>
#include <string>

class ZoProxy;

/// The middleware's hub in this process: the way to the robot's modules and to local ones.
///
/// With a robot it has a link: a connection that one I/O thread looks up, opens, authenticates,
/// watches and, when lost, opens again by itself. Brokers of one process with the same robot and
/// the same options share one, which the server lists by the name of the broker that came first.
/// It ends with the last of these brokers and the proxies they gave out. Every operation may be
/// called from any thread.
///
/// The link does not try again when the robot refuses the login, or either side the other's
/// certificate: that would not help, and might lock the account. `reconnect` begins anew, also
/// after `disconnect`.
class ZO_EXPORT ZoBroker : public boost::enable_shared_from_this<ZoBroker>
{
public:
    /// A broker called `name`, connected to the robot's memory at `ip` (address or host name)
    /// and `port`. Waits for the connection and throws ZoError, naming address and cause, when
    /// there is none within `options.connectTimeout`. A shared link that is down is tried anew at
    /// once.
    static boost::shared_ptr<ZoBroker> create(const std::string& name, const std::string& ip,
                                              int port, const ZoBrokerOptions& options = {});
    /// The same, but without waiting: `linkStatus` tells by and by what becomes of it, `opening`
    /// first, then `connected` or, in `cause`, why not. It goes on trying then, unless `refused`,
    /// until the broker goes, which takes no time at any moment.
    static boost::shared_ptr<ZoBroker> begin(const std::string& name, const std::string& ip,
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

    /// Drops the link to the robot, if it is up, and opens it with other `options`, for all brokers
    /// that share it; `prefix`, `follow` and `notices` stay as they were. Does not wait for the
    /// outcome, which linkStatus tells; `refused` is false when this returns. Calls under way fail.
    /// Throws ZoError, and leaves the link as it is, when a file that the options name is no good,
    /// and without a robot.
    void reconnect(const ZoBrokerOptions& options);

    /// Drops the link to the robot, for all brokers that share it, and does not try again before
    /// `reconnect`, or a broker that is made to share it. Calls under way fail, and later ones at
    /// once; linkStatus tells it when this returns. Without a robot nothing happens.
    void disconnect();

    /// Tells links apart: brokers that share one give the same, and others another as long as both
    /// live. Null without a robot. Of no other use.
    const void* linkIdentity() const noexcept;

private:
    struct Parts;
    explicit ZoBroker(std::unique_ptr<Parts> parts);

    std::unique_ptr<Parts> fParts;
};
