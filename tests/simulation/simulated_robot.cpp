// SPDX-License-Identifier: MIT
#include "simulation/simulated_robot.h"

#include "simulation/odd_replies.h"
#include "simulation/request_reader.h"

#include <algorithm>
#include <cctype>
#include <utility>

using namespace zo;

namespace {

// Of one that takes several slices, so much is there before the rest.
constexpr std::size_t longCommand = 60000;

std::string lowered(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

/// How many words a command has: exactly so many, or at least so many when negative. 0: there is
/// no such command.
int wordsOf(std::string_view name)
{
    static constexpr std::pair<std::string_view, int> known[] = {
        {"auth", -2},           {"client|setname", 3}, {"cluster|getkeysinslot", 4},
        {"cluster|keyslot", 3}, {"cluster|slots", 2},  {"get", 2},
        {"mget", -2},           {"mset", -3},          {"ping", -1},
        {"readonly", 1},        {"scan", -2},          {"set", -3}};
    for (const auto& command : known) {
        if (command.first == name)
            return command.second;
    }
    return 0;
}

std::string nameOf(const SimulatedRobot::Words& words)
{
    std::string name = lowered(words[0]);
    if ((name == "client" || name == "cluster") && words.size() > 1)
        name.append("|").append(lowered(words[1]));
    return name;
}

bool hasKeys(std::string_view name)
{
    return name == "mget" || name == "get" || name == "mset" || name == "set";
}

std::string unknown(const SimulatedRobot::Words& words)
{
    std::string text =
        "ERR unknown command '" + std::string(words[0]) + "', with args beginning with: ";
    for (std::size_t i = 1; i < words.size(); ++i)
        text.append("'").append(words[i]).append("' ");
    return text;
}

Word wordOf(std::string_view error)
{
    const auto begins = [&](std::string_view with) { return error.substr(0, with.size()) == with; };
    if (begins("LOADING ") || begins("ERR max number of clients"))
        return Word::Passing;
    if (begins("NOAUTH "))
        return Word::NeedsLogin;
    return begins("NOPERM ") ? Word::NoRight : Word::Refusal;
}

/// Whether `text` is as the server's `pattern` says.
bool matches(std::string_view pattern, std::string_view text)
{
    if (pattern.empty())
        return text.empty();
    if (pattern[0] == '*')
        return matches(pattern.substr(1), text) ||
               (!text.empty() && matches(pattern, text.substr(1)));
    const bool isLiteral = pattern[0] == '\\' && pattern.size() > 1;
    pattern.remove_prefix(isLiteral ? 1 : 0);
    const bool isAny = !isLiteral && pattern[0] == '?';
    return !text.empty() && (isAny || pattern[0] == text[0]) &&
           matches(pattern.substr(1), text.substr(1));
}

/// What the names must be like that `words`, a SCAN, asks for.
std::string_view patternIn(const SimulatedRobot::Words& words)
{
    const auto option = std::find(words.begin(), words.end(), "MATCH");
    return option == words.end() || option + 1 == words.end() ? "*" : option[1];
}

void appendText(std::string_view text, std::string& reply)
{
    reply.append("$")
        .append(std::to_string(text.size()))
        .append("\r\n")
        .append(text)
        .append("\r\n");
}

} // namespace

void SimulatedRobot::welcome(RobotSession& session) const
{
    session.isLoggedIn = rules.password.empty();
    if (!rules.isFull)
        return;
    session.answers.say("-ERR max number of clients reached\r\n", Word::Passing);
    session.hangsUp = true;
    session.isMute = true;
}

void SimulatedRobot::receive(RobotSession& session, std::string_view bytes)
{
    session.input.append(bytes);
    std::string_view rest = session.input;
    Words words;
    while (!session.isMute && !rest.empty() && takeCommand(rest, words)) {
        if (!std::exchange(session.isAhead, false))
            execute(session, words);
    }
    answerEarly(session, rest.size());
    session.input.erase(0, session.input.size() - rest.size());
}

/// Refuses a command that is long, when no more than so much of it is there.
void SimulatedRobot::answerEarly(RobotSession& session, std::size_t arrived)
{
    const bool isLong = arrived >= longCommand && !session.isMute && !session.isAhead;
    if (nextReply != Fault::ReplyComesEarly || !isLong)
        return;
    nextReply = Fault::None;
    session.isAhead = true;
    session.answers.say("-ERR Protocol error: invalid bulk length\r\n", Word::Refusal,
                        Fault::ReplyComesEarly);
}

void SimulatedRobot::push(RobotSession& session)
{
    if (!session.isMute)
        session.answers.say(fRandom.pick(pushReplies()), Word::Push, Fault::Push);
}

void SimulatedRobot::execute(RobotSession& session, const Words& words)
{
    if (lives && fRandom.chance(40)) {
        const int key = static_cast<int>(fRandom.below(memory.keys()));
        memory.put(key, fRandom.chance(10) ? noValue : memory.fresh(key));
    }
    const std::string name = nameOf(words);
    const int count = static_cast<int>(words.size());
    const int wanted = wordsOf(name);
    if (wanted == 0)
        return fail(session, unknown(words));
    if (wanted > 0 ? count != wanted : count < -wanted)
        return fail(session, "ERR wrong number of arguments for '" + name + "' command");
    if (name == "auth")
        return logIn(session, words);
    if (!session.isLoggedIn)
        return fail(session, "NOAUTH Authentication required.");
    if (isForbidden(name))
        return fail(session,
                    "NOPERM this user has no permissions to run the '" + name + "' command");
    if (asksForForbidden(words, name))
        return fail(session,
                    "NOPERM this user has no permissions to access one of the keys used as "
                    "arguments");
    if (rules.isLoading && name != "client|setname")
        return fail(session, "LOADING Redis is loading the dataset in memory");
    const std::string away = cluster && hasKeys(name) ? redirection(session, words) : "";
    if (!away.empty())
        return fail(session, away);
    answer(session, words, name);
}

bool SimulatedRobot::asksForForbidden(const Words& words, std::string_view name) const
{
    if (rules.forbiddenKey < 0 || !hasKeys(name))
        return false;
    const std::string key = rules.prefix + keyName(rules.forbiddenKey);
    const std::size_t step = name == "mset" ? 2 : 1;
    const std::size_t end = name == "set" ? 2 : words.size();
    for (std::size_t i = 1; i < end; i += step) {
        if (words[i] == key)
            return true;
    }
    return false;
}

void SimulatedRobot::answer(RobotSession& session, const Words& words, std::string_view name)
{
    if (name == "cluster|getkeysinslot" && cluster)
        return namesInSlot(session);
    if (name == "cluster|getkeysinslot" || name == "cluster|keyslot" || name == "cluster|slots" ||
        name == "readonly")
        return answerAsNode(session, name);
    if (name == "mget")
        return values(session, words);
    if (name == "scan")
        return names(session, words);
    if (name == "ping" && words.size() > 2)
        return fail(session, "ERR wrong number of arguments for 'ping' command");
    if (name == "ping" && words.size() == 2) {
        fReply.clear();
        appendText(words[1], fReply);
        return say(session, fReply);
    }
    if (name == "ping")
        return say(session, "+PONG\r\n");
    if (name == "get") {
        fReply.clear();
        appendValue(words[1]);
        return say(session, fReply);
    }
    if (name == "mset" && words.size() % 2 == 0)
        return fail(session, "ERR wrong number of arguments for 'mset' command");
    if (name == "set" || name == "mset")
        store(words);
    say(session, "+OK\r\n");
}

void SimulatedRobot::answerAsNode(RobotSession& session, std::string_view name)
{
    if (!cluster)
        return fail(session, "ERR This instance has cluster support disabled");
    say(session, name == "readonly" ? "+OK\r\n" : cluster->table(session.address));
}

void SimulatedRobot::logIn(RobotSession& session, const Words& words)
{
    if (words.size() > 3)
        return fail(session, "ERR syntax error");
    if (rules.password.empty() && words.size() == 2)
        return fail(session, "ERR AUTH <password> called without any password configured for the "
                             "default user. Are you sure your configuration is correct?");
    const bool isKnown = words.size() == 2 || words[1] == rules.user || words[1] == "default";
    const bool isOpen = rules.password.empty() && words[1] == "default";
    if (!isOpen && (!isKnown || rules.password.empty() || words.back() != rules.password))
        return fail(session, "WRONGPASS invalid username-password pair or user is disabled.");
    session.isLoggedIn = true;
    say(session, "+OK\r\n");
}

void SimulatedRobot::values(RobotSession& session, const Words& words)
{
    if (spoilValues(session, words))
        return;
    listValues(words, words.size() - 1);
    say(session, fReply);
}

/// Makes a reply that announces so many values, with `inside` before them.
void SimulatedRobot::listValues(const Words& words, std::size_t announced, std::string_view inside)
{
    fReply.assign("*").append(std::to_string(announced)).append("\r\n").append(inside);
    for (std::size_t i = 1; i < words.size(); ++i)
        appendValue(words[i]);
}

/// What can go wrong with values and nothing else; whether it did.
bool SimulatedRobot::spoilValues(RobotSession& session, const Words& words)
{
    const Fault fault = nextReply;
    const bool isSpoilt = fault == Fault::TooManyElements || fault == Fault::TooFewElements ||
                          fault == Fault::PushInsideReply;
    const int key = numberOf(words[1]);
    const bool areFew = words.size() < 10; // the whole reply must be small enough
    if (fault == Fault::LargeValue && key >= 0 && areFew) {
        nextReply = Fault::None;
        memory.put(key, largeValue);
        listValues(words, words.size() - 1);
        memory.put(key, memory.fresh(key));
        session.answers.say(fReply, Word::Fine, fault);
        return true;
    }
    if (!isSpoilt)
        return false;
    nextReply = Fault::None;
    const std::size_t surplus = fault == Fault::TooManyElements ? 1 : 0;
    const std::size_t missing = fault == Fault::TooFewElements ? 1 : 0;
    listValues(words, words.size() - 1 + surplus - missing,
               fault == Fault::PushInsideReply ? fRandom.pick(pushReplies()) : std::string_view());
    session.answers.say(fReply, Word::Spoilt, fault);
    session.isMute = true;
    return true;
}

bool SimulatedRobot::isOwn(std::string_view name) const
{
    return name.substr(0, rules.prefix.size()) == rules.prefix;
}

/// Of its own keys; -1: of none.
int SimulatedRobot::numberOf(std::string_view name) const
{
    return isOwn(name) ? keyNumber(name.substr(rules.prefix.size())) : -1;
}

void SimulatedRobot::names(RobotSession& session, const Words& words)
{
    std::vector<std::string> all;
    for (int key = 0; key < memory.keys(); ++key) {
        if (memory.get(key) != noValue)
            all.push_back(rules.prefix + keyName(key));
    }
    // On a server of many robots are others with the same names.
    if (!rules.prefix.empty())
        all.insert(all.end(), {keyName(0), "robot70/" + keyName(0), "r17x/" + keyName(0)});
    std::string list;
    int count = 0;
    for (const std::string& name : all) {
        if (!matches(patternIn(words), name))
            continue;
        appendText(name, list);
        ++count;
    }
    fReply.assign("*2\r\n$1\r\n0\r\n*").append(std::to_string(count)).append("\r\n").append(list);
    say(session, fReply);
}

/// A node tells those that it has: some have gone from the owner when they are moving, and the
/// others have none.
void SimulatedRobot::namesInSlot(RobotSession& session)
{
    std::string list;
    int count = 0;
    const bool isOwner = cluster->nodeAt(session.address) == cluster->owner;
    for (int key = 0; isOwner && key < memory.keys(); ++key) {
        if (memory.get(key) == noValue || (cluster->isMoving && fRandom.chance(50)))
            continue;
        appendText(rules.prefix + keyName(key), list);
        ++count;
    }
    fReply.assign("*").append(std::to_string(count)).append("\r\n").append(list);
    say(session, fReply);
}

std::string SimulatedRobot::redirection(const RobotSession& session, const Words& words) const
{
    const int key = numberOf(words[1]);
    const bool isAbsent = key < 0 || key >= memory.keys() || memory.get(key) == noValue;
    const bool areSeveral = words.size() > 2;
    return cluster->redirection(session.address, areSeveral, isAbsent && !areSeveral);
}

void SimulatedRobot::store(const Words& words)
{
    for (std::size_t i = 1; i + 1 < words.size(); i += 2) {
        const int key = numberOf(words[i]);
        const ValueId id = valueIdOfText(words[i + 1]);
        if (key >= 0 && key < memory.keys() && id > 0)
            memory.put(key, id);
    }
}

void SimulatedRobot::appendValue(std::string_view name)
{
    if (!isOwn(name))
        return appendText("\"another robot's\"", fReply);
    const int key = numberOf(name);
    const ValueId id = key >= 0 && key < memory.keys() ? memory.get(key) : noValue;
    if (id == noValue)
        fReply.append("$-1\r\n");
    else if (id == largeValue)
        appendText(largeText(), fReply);
    else
        appendText(robotText(id), fReply);
}

void SimulatedRobot::fail(RobotSession& session, const std::string& text)
{
    say(session, "-" + text + "\r\n", wordOf(text));
}

void SimulatedRobot::say(RobotSession& session, std::string_view reply, Word word)
{
    const Fault fault = nextReply;
    switch (fault) {
    case Fault::Garbage:
        session.answers.say(fRandom.pick(garbageReplies()), Word::Spoilt, fault);
        session.isMute = true;
        break;
    case Fault::SurplusReply:
        session.answers.say(reply, word);
        session.answers.say(":1\r\n", Word::Spoilt, fault);
        session.isMute = true;
        break;
    case Fault::Push:
        push(session);
        session.answers.say(reply, word);
        break;
    case Fault::ReplyBreaksOff:
    case Fault::DeathInsideReply:
        session.answers.say(reply.substr(0, 1 + fRandom.below(reply.size() - 1)), Word::Part,
                            fault);
        session.isMute = true;
        session.hangsUp = fault == Fault::DeathInsideReply;
        break;
    default: // none, or one that waits for values
        session.answers.say(reply, word);
        return;
    }
    nextReply = Fault::None;
}
