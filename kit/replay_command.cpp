// SPDX-License-Identifier: MIT
#include <kit/quantity.h>
#include <kit/replay_command.h>

#include <charconv>
#include <sstream>
#include <vector>

namespace kit {

namespace {

using Kind = ReplayCommand::Kind;

constexpr int mostSteps = 1000000;

template <typename Number>
std::optional<Number> numberIn(const std::string& text, Number lowest, Number highest)
{
    Number number{};
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (read.ec == std::errc() && read.ptr == end && number >= lowest && number <= highest)
        return number;
    return {};
}

std::optional<ReplayCommand> stepsFrom(const std::string& text)
{
    ReplayCommand command{Kind::Step};
    if (const auto steps = numberIn(text, 1, mostSteps)) {
        command.steps = *steps;
        return command;
    }
    return {};
}

std::optional<ReplayCommand> speedFrom(const std::string& text)
{
    ReplayCommand command{Kind::Speed};
    if (const auto speed = numberIn(text, lowestReplaySpeed, highestReplaySpeed)) {
        command.speed = *speed;
        return command;
    }
    return {};
}

std::optional<ReplayCommand> wordOf(const std::string& name)
{
    if (name == "play")
        return ReplayCommand{Kind::Play};
    if (name == "pause")
        return ReplayCommand{Kind::Pause};
    if (name == "step")
        return ReplayCommand{Kind::Step};
    return {};
}

} // namespace

std::optional<ReplayCommand> replayCommandFrom(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word && words.size() < 3;)
        words.push_back(word);
    if (words.size() == 1)
        return wordOf(words[0]);
    if (words.size() != 2)
        return {};
    if (words[0] == "step")
        return stepsFrom(words[1]);
    if (words[0] == "jump")
        return jumpFrom(words[1]);
    return words[0] == "speed" ? speedFrom(words[1]) : std::nullopt;
}

std::optional<ReplayCommand> jumpFrom(const std::string& text)
{
    ReplayCommand command{Kind::JumpTo};
    const bool isRelative = !text.empty() && (text[0] == '+' || text[0] == '-');
    const auto moment = isRelative ? std::nullopt : secondsIn(text);
    if (moment) {
        command.time = *moment;
        return command;
    }
    const auto time = timeIn(text.substr(isRelative ? 1 : 0));
    if (!time)
        return {};
    command.kind = isRelative ? Kind::JumpBy : Kind::JumpFrom;
    command.time = text[0] == '-' ? -*time : *time;
    return command;
}

} // namespace kit
