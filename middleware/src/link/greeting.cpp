// SPDX-License-Identifier: MIT
#include "link/greeting.h"

#include "link/secret_text.h"
#include "wire/request.h"
#include "wire/server_error.h"

namespace zo {

namespace {

constexpr std::size_t roomBesideWords = 128;

void appendLogin(const ZoBrokerOptions& options, std::string& bytes)
{
    if (options.user.empty())
        appendCommand({"AUTH", options.password}, bytes);
    else
        appendCommand({"AUTH", options.user, options.password}, bytes);
}

} // namespace

Greeting::Greeting(const LinkSettings& settings)
    : fHasLogin(!settings.options.user.empty() || !settings.options.password.empty()),
      fAnswers(std::make_shared<StatusSink>("PING"))
{
    const ZoBrokerOptions& options = settings.options;
    std::string bytes; // which grows no more: what it left behind would not be wiped
    bytes.reserve(options.user.size() + options.password.size() + settings.clientName.size() +
                  roomBesideWords);
    if (fHasLogin)
        appendLogin(options, bytes);
    appendCommand({"PING"}, bytes);
    appendCommand({"CLIENT", "SETNAME", settings.clientName}, bytes);
    fInquiry = std::make_shared<const Inquiry>("PING", secretText(std::move(bytes)),
                                               fHasLogin ? 3 : 2, fAnswers);
}

const StatusSink::Answer* Greeting::answer(int number) const
{
    const auto& answers = fAnswers->answers();
    return number < static_cast<int>(answers.size()) ? &answers[number] : nullptr;
}

Greeting::Verdict Greeting::verdict() const
{
    if (login() && login()->isError)
        return willPass(login()->text) ? Verdict::NotReady : Verdict::Refused;
    if (!ping())
        return Verdict::Pending;
    // A user without the right to PING has a working link all the same.
    if (ping()->isError && wantsLogin(ping()->text))
        return Verdict::Refused;
    if (ping()->isError ? !isForbidden(ping()->text) : ping()->text != "PONG")
        return Verdict::NotReady;
    return Verdict::Welcome; // whatever becomes of the name
}

std::string Greeting::problem(const Peer& peer) const
{
    const bool isLogin = login() && login()->isError;
    const StatusSink::Answer* const decisive = isLogin ? login() : ping();
    const std::string words = decisive ? peer.quote(decisive->text) : std::string();
    if (verdict() == Verdict::NotReady)
        return "not ready: " + words;
    return (isLogin ? "user or password refused: " : "login refused: ") + words;
}

} // namespace zo
