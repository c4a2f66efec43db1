// SPDX-License-Identifier: MIT
#pragma once

#include "link/call.h"
#include "link/link_pulse.h"
#include "link/link_settings.h"
#include "link/link_state.h"

#include <zo/error.h>
#include <zo/link_status.h>

#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace zo {

class LinkCompanion;
class LinkDriver;

/// The connection to a robot, with its one I/O thread. The broker and the proxies to the robot's
/// modules share it; the thread ends with the last of them. May be used from any thread.
class Link
{
public:
    /// Begins to connect. Throws ZoError when `settings` cannot be used. `companion` may be null;
    /// it lives as long as the link.
    explicit Link(std::shared_ptr<const LinkSettings> settings,
                  std::shared_ptr<LinkCompanion> companion = nullptr);
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    /// Begins anew when it is down and no first attempt is under way, and does not wait for the
    /// result. Throws ZoError when its settings cannot be used any more.
    void beginAnewIfDown();
    /// Waits for the end of the first attempt. Throws ZoError when that fails.
    void waitUntilOpen();
    /// The same until `deadline`.
    void waitUntilOpen(SteadyClock::time_point deadline);

    /// Begins anew with other settings of the same robot, and does not wait for the result; nothing
    /// happens when that is under way already. Throws ZoError, and changes nothing, when these
    /// cannot be used.
    void reconnect(const std::shared_ptr<const LinkSettings>& settings);

    /// Goes down, and stays so until somebody begins anew.
    void disconnect();

    std::shared_ptr<const LinkSettings> settings() const;
    bool isUp() const { return fState.isUp(); }
    ZoLinkStatus status() const;
    /// Counts how often the link has come up.
    int connections() const { return fState.connections(); }

    const LinkPulse& pulse() const { return fPulse; }
    /// Where it is up; null while it is down.
    NodePtr node() const { return fState.node(); }
    /// Throws ZoError with the cause and the time of the loss while the link is down.
    void throwIfDown() const { fState.throwIfDown(); }

    /// When an exchange about `keys` keys that begins now must be over.
    Deadline deadlineFor(int keys) const;

    ZoError error(const std::string& problem) const;
    /// What is thrown when the server answers `command` with the error `text`.
    ZoError refusal(const std::string& command, const std::string& text) const;

    /// Sends `call` and waits for its end. Throws ZoError when it fails, at its deadline, and at
    /// once while the link is down. Several calls under way take turns. One that is given up leaves
    /// the link as it is.
    void run(const std::shared_ptr<Call>& call);

    /// Its companion may have something to send.
    void nudge();

private:
    void begin(const std::shared_ptr<const LinkSettings>& settings);

    std::mutex fBeginning;     ///< one begins at a time
    mutable std::mutex fMutex; ///< guards fSettings
    std::shared_ptr<const LinkSettings> fSettings;
    LinkState fState;
    LinkPulse fPulse;
    const std::shared_ptr<LinkCompanion> fCompanion;
    std::unique_ptr<LinkDriver> fDriver;
    std::thread fThread; // what it does lives in fDriver, which goes after the thread has ended
};

} // namespace zo
