// SPDX-License-Identifier: MIT
#pragma once

#include "link/inquiry.h"
#include "link/link_settings.h"
#include "link/owner_search.h"
#include "wire/status_sink.h"

#include <memory>
#include <string>

namespace zo {

/// What a link says first on a new connection, and what the answers mean: login, whether the
/// server is ready, a name for its list of clients, and what else it is asked.
class Greeting
{
public:
    enum class Verdict
    {
        Pending,
        Welcome,
        NotReady, ///< to be tried again
        Refused   ///< not to be tried again
    };

    /// With `question` behind it, or null. `logsIn`: if the settings have a login.
    explicit Greeting(const LinkSettings& settings, const OwnerSearch::Question* question = nullptr,
                      bool logsIn = true);

    const std::shared_ptr<const Inquiry>& inquiry() const { return fInquiry; }

    /// What the answers so far mean. The first bad one decides; a welcome holds when all of the
    /// inquiry is over.
    Verdict verdict() const;
    /// Why it is no welcome, in the server's words.
    std::string problem(const Peer& peer) const;

private:
    const StatusSink::Answer* answer(int number) const;
    const StatusSink::Answer* login() const { return fHasLogin ? answer(0) : nullptr; }
    const StatusSink::Answer* ping() const { return answer(fHasLogin ? 1 : 0); }

    const bool fHasLogin;
    std::shared_ptr<StatusSink> fAnswers;
    std::shared_ptr<const Inquiry> fInquiry;
};

} // namespace zo
