// SPDX-License-Identifier: MIT
#include "link/probe.h"

#include "link/address_race.h"
#include "link/look_up.h"

#include <zo/error.h>

#include <algorithm>
#include <utility>

namespace zo {

namespace asio = boost::asio;

namespace {

constexpr std::chrono::milliseconds betweenQuestions{100};
constexpr std::size_t readBufferSize = std::size_t{64} << 10;

} // namespace

Probe::Probe(std::shared_ptr<const LinkSettings> settings, GoOn goOn)
    : fSettings(std::move(settings)),
      fGoOn(std::move(goOn)),
      fTls(makeTlsContext(fSettings->options)),
      fContext(std::make_shared<asio::io_context>(1)),
      fKeepRunning(fContext->get_executor()),
      fBuffer(readBufferSize)
{
}

void Probe::runUntil(const bool& isDone, Time end)
{
    while (!isDone && SteadyClock::now() < end) {
        if (fGoOn && !fGoOn())
            throw ZoError("called off");
        fContext->run_one_until(std::min(end, SteadyClock::now() + betweenQuestions));
    }
}

/// Waits for what `start` starts; `silence` is said when it does not end in time. What is given up
/// then comes to nothing: the stream is closed.
void Probe::await(Time end, const std::string& silence,
                  const std::function<void(const Done&)>& start)
{
    struct Outcome
    {
        bool isDone = false;
        ErrorCode error;
    };
    const auto outcome = std::make_shared<Outcome>();
    start([outcome](const ErrorCode& error) { *outcome = {true, error}; });
    runUntil(outcome->isDone, end);
    if (outcome->isDone && !outcome->error)
        return;
    const std::string problem = outcome->isDone ? fStream->explain(outcome->error) : silence;
    fStream->close();
    throw ZoError(problem);
}

std::vector<LinkAddress> Probe::lookUp(const ZoAddress& node)
{
    struct Answer
    {
        bool isDone = false;
        LookUpResult result;
    };
    const auto answer = std::make_shared<Answer>();
    zo::lookUp(fContext, fSettings->hostToLookUp(node), node.port,
               [answer](const LookUpResult& result) {
                   *answer = {true, result};
               });
    runUntil(answer->isDone, endOfStep());
    if (!answer->isDone)
        throw ZoError("no answer within " + inMilliseconds(fSettings->options.connectTimeout));
    if (answer->result.addresses.empty())
        throw ZoError(answer->result.problem);
    std::vector<LinkAddress> addresses = answer->result.addresses;
    addresses.resize(std::min(addresses.size(), AddressRace::fMostAddresses));
    return addresses;
}

void Probe::connect(const LinkAddress& address, const std::string& host)
{
    fStream = std::make_unique<Stream>(*fContext, fTls, *fSettings, host);
    fReader.emplace();
    await(endOfStep(), "no answer within " + inMilliseconds(fSettings->options.connectTimeout),
          [&](const Done& done) { fStream->connect(address, done); });
    fReader.emplace();
    fIsReady = true;
}

TlsFacts Probe::startTls()
{
    await(endOfStep(), "no answer within " + inMilliseconds(fSettings->options.connectTimeout),
          [&](const Done& done) { fStream->startTls(done); });
    return fStream->tlsFacts();
}

void Probe::ask(const Inquiry& inquiry)
{
    ask(inquiry, Deadline::after(SteadyClock::now(), fSettings->options.connectTimeout));
}

void Probe::ask(const Inquiry& inquiry, const Deadline& deadline)
{
    fIsReady = false;
    const Time end = deadline.at;
    const std::string silence =
        "no reply to " + inquiry.name() + " within " + inMilliseconds(deadline.allowed);
    await(end, silence, [&](const Done& done) {
        fStream->write(
            asio::buffer(*inquiry.bytes()),
            [done, kept = inquiry.bytes()](const ErrorCode& error, std::size_t) { done(error); });
    });
    fReader->expect(inquiry.part(0).replies, inquiry.sink());
    while (!fReader->isComplete()) {
        const std::string_view rest = fReader->read(read(end, silence));
        if (fReader->hasProblem())
            throw ZoError(fReader->problem().text);
        if (!rest.empty())
            throw ZoError("malformed reply: more than was asked for");
    }
    fIsReady = true;
}

std::string_view Probe::read(Time end, const std::string& silence)
{
    const auto size = std::make_shared<std::size_t>(0);
    await(end, silence, [&](const Done& done) {
        fStream->readSome(asio::buffer(fBuffer),
                          [done, size](const ErrorCode& error, std::size_t count) {
                              *size = count;
                              done(error);
                          });
    });
    return {fBuffer.data(), *size};
}

} // namespace zo
