// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"
#include "link/inquiry.h"
#include "link/link_actions.h"
#include "link/link_settings.h"
#include "link/stream.h"
#include "wire/reply_reader.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zo {

/// A connection to a robot that is made by hand, step by step, by one thread that waits for each
/// step, to find out which of them works. All throw ZoError with the cause, which does not name the
/// robot; each takes `connectTimeout` at most.
class Probe
{
public:
    using GoOn = std::function<bool()>;

    /// When `goOn`, if there is one, says no, the step that waits throws soon. Throws for files of
    /// the options that are no good.
    explicit Probe(std::shared_ptr<const LinkSettings> settings, GoOn goOn = {});

    std::vector<LinkAddress> lookUp(const ZoAddress& node);
    /// To an address of `host`, in place of the connection that there was, if any.
    void connect(const LinkAddress& address, const std::string& host);
    /// Returns what was agreed upon.
    TlsFacts startTls();
    /// Sends `inquiry`, and waits until its sink has the whole answer.
    void ask(const Inquiry& inquiry);
    /// The same, but by that deadline.
    void ask(const Inquiry& inquiry, const Deadline& deadline);
    /// Whether all that was asked is answered: more can be asked.
    bool isReady() const { return fIsReady; }

private:
    using ErrorCode = boost::system::error_code;
    using Time = SteadyClock::time_point;
    using Done = std::function<void(const ErrorCode&)>;

    void runUntil(const bool& isDone, Time end);
    void await(Time end, const std::string& silence, const std::function<void(const Done&)>& start);
    std::string_view read(Time end, const std::string& silence);
    Time endOfStep() const { return SteadyClock::now() + fSettings->options.connectTimeout; }

    const std::shared_ptr<const LinkSettings> fSettings;
    const GoOn fGoOn;
    const std::shared_ptr<TlsContext> fTls;
    const std::shared_ptr<boost::asio::io_context> fContext; ///< look-ups may hold it longer
    const boost::asio::executor_work_guard<boost::asio::io_context::executor_type> fKeepRunning;
    std::unique_ptr<Stream> fStream;
    std::vector<char> fBuffer;
    std::optional<ReplyReader> fReader; ///< of the connection
    bool fIsReady = false;
};

} // namespace zo
