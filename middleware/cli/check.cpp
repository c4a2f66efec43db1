// SPDX-License-Identifier: MIT
#include "check.h"

#include <kit/connection_options.h>
#include <kit/escape.h>
#include <kit/output.h>

#include <zo/check.h>

#include <algorithm>
#include <string>

namespace {

using Subject = ZoCheck::Subject;

constexpr std::size_t widthOfWord = 9;
constexpr std::size_t widthOfName = 12;

std::string wordFor(ZoCheck::Outcome outcome)
{
    switch (outcome) {
    case ZoCheck::Outcome::Ok:
        return "ok";
    case ZoCheck::Outcome::Failed:
        return "failed";
    case ZoCheck::Outcome::Skipped:
        break;
    }
    return "skipped";
}

struct SubjectWords
{
    const char* name;
    const char* advice; ///< when it failed; empty: the cause says it all
};

SubjectWords wordsFor(Subject subject, bool hasTls)
{
    switch (subject) {
    case Subject::LookUp:
        return {"look-up", "check the name, or give the address itself"};
    case Subject::Connection:
        return {"connection", "is the robot on, does its memory listen to this network at this "
                              "port, and does no firewall stand between?"};
    case Subject::Tls:
        return {"TLS", "does the server speak TLS at this port? --ca names the authority that "
                       "signed its certificate"};
    case Subject::Answer:
        return {"answer", hasTls
                              ? "is it a robot's memory, and does it want to see --cert and --key?"
                              : "is it a robot's memory, does it hang, or does it want --tls?"};
    case Subject::Readiness:
        return {"readiness", "try again in a while"};
    case Subject::Login:
        return {"login", "--user and --password-file say who you are"};
    case Subject::Node:
        return {"node", "can each node be reached at the address that the others tell?"};
    case Subject::Rights:
        return {"rights", "the robot's access list must allow this user SCAN, MGET, and to read "
                          "the keys"};
    case Subject::Server:
        return {"server", ""};
    case Subject::Keys:
        return {"keys", ""};
    case Subject::RoundTrip:
        return {"round trip", ""};
    case Subject::Notices:
        return {"notices", ""};
    }
    return {"", ""};
}

std::string padded(std::string text, std::size_t width)
{
    text.resize(std::max(text.size() + 1, width), ' ');
    return text;
}

std::string lineOf(const ZoCheck::Step& step, bool hasTls)
{
    const SubjectWords words = wordsFor(step.subject, hasTls);
    std::string line = padded(wordFor(step.outcome), widthOfWord) +
                       padded(words.name, widthOfName) + kit::escaped(step.text);
    if (step.outcome == ZoCheck::Outcome::Failed && *words.advice)
        line += std::string(" (") + words.advice + ")";
    return line + "\n";
}

} // namespace

bool checkRobot(const kit::Connection& connection, kit::Output& output)
{
    const auto tell = [&](const ZoCheck::Step& step) {
        output.add(lineOf(step, connection.options.tls));
        output.flush();
    };
    return ZoCheck::run(connection.address, connection.options, tell);
}
