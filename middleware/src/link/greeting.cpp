// SPDX-License-Identifier: MIT
#include "link/greeting.h"

#include "link/secret_text.h"
#include "wire/request.h"
#include "wire/server_error.h"

#include <utility>

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

/// Gives the first replies to one sink, and those behind them to another.
class SplitSink : public ReplySink
{
public:
    SplitSink(std::shared_ptr<ReplySink> first, int count, std::shared_ptr<ReplySink> second)
        : fFirst(std::move(first)), fCount(count), fSecond(std::move(second))
    {
    }

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override
    {
        ReplySink& sink = of(place);
        return sink.take(inside(place), piece) || refuse(sink.problem());
    }
    std::string nameOf(const ReplyPlace& place) const override
    {
        return of(place).nameOf(inside(place));
    }

private:
    ReplySink& of(const ReplyPlace& place) const
    {
        return place.reply < fCount ? *fFirst : *fSecond;
    }
    ReplyPlace inside(const ReplyPlace& place) const
    {
        return {place.reply < fCount ? place.reply : place.reply - fCount, place.depth,
                place.index};
    }

    const std::shared_ptr<ReplySink> fFirst;
    const int fCount;
    const std::shared_ptr<ReplySink> fSecond;
};

} // namespace

Greeting::Greeting(const LinkSettings& settings, const OwnerSearch::Question* question, bool logsIn)
    : fHasLogin(logsIn && (!settings.options.user.empty() || !settings.options.password.empty())),
      fAnswers(std::make_shared<StatusSink>("PING"))
{
    const ZoBrokerOptions& options = settings.options;
    std::string bytes; // which grows no more: what it left behind would not be wiped
    bytes.reserve(options.user.size() + options.password.size() + settings.clientName.size() +
                  (question ? question->bytes.size() : 0) + roomBesideWords);
    if (fHasLogin)
        appendLogin(options, bytes);
    appendCommand({"PING"}, bytes);
    appendCommand({"CLIENT", "SETNAME", settings.clientName}, bytes);
    const int answers = fHasLogin ? 3 : 2;
    std::shared_ptr<ReplySink> sink = fAnswers;
    if (question) {
        bytes += question->bytes;
        sink = std::make_shared<SplitSink>(fAnswers, answers, question->sink);
    }
    fInquiry = std::make_shared<const Inquiry>("PING", secretText(std::move(bytes)),
                                               answers + (question ? question->replies : 0), sink);
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
