// SPDX-License-Identifier: MIT
#include "arguments.h"

#include <zo/error.h>

#include <charconv>
#include <limits>

namespace {

constexpr int maxPort = 65535;
constexpr double minRate = 0.1;
constexpr double maxRate = 1000;

/// The number that `text` spells out whole, from `min` to `max`.
template <typename Number>
Number parseNumber(const std::string& option, const std::string& text, Number min, Number max)
{
    Number number{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || !(number >= min && number <= max)) {
        std::string limits = std::to_string(min) + " to " + std::to_string(max);
        if (std::is_floating_point_v<Number>)
            limits = "0.1 to 1000";
        throw UsageError(option + " needs a number from " + limits + ", not \"" + text + "\"");
    }
    return number;
}

ZoAddress parseAddress(const std::string& text)
{
    try {
        return ZoAddress::fromText(text);
    } catch (const ZoError& error) {
        throw UsageError("--connect: " + error.toString());
    }
}

void apply(const std::string& option, const std::string& value, RobotArguments& arguments)
{
    if (option == "--connect")
        arguments.server = parseAddress(value);
    else if (option == "--port")
        arguments.port = parseNumber<int>(option, value, 1, maxPort);
    else if (option == "--rate")
        arguments.rate = parseNumber<double>(option, value, minRate, maxRate);
    else if (option == "--keys")
        arguments.keys = parseNumber<int>(option, value, 1, maxRobotKeys);
    else
        arguments.seed =
            parseNumber<std::uint32_t>(option, value, 0, std::numeric_limits<std::uint32_t>::max());
}

bool takesValue(const std::string& option)
{
    for (const char* known : {"--connect", "--port", "--rate", "--keys", "--seed"})
        if (option == known)
            return true;
    return false;
}

} // namespace

RobotArguments parseArguments(const std::vector<std::string>& words)
{
    RobotArguments arguments;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::size_t equals = words[i].find('=');
        const std::string option = words[i].substr(0, equals);
        if (words[i] == "--help" || words[i] == "-h" || words[i] == "--version") {
            arguments.action = words[i] == "--version" ? RobotArguments::Action::Version
                                                       : RobotArguments::Action::Help;
            return arguments;
        }
        if (!takesValue(option))
            throw UsageError("unknown option \"" + words[i] + "\"");
        if (equals == std::string::npos && i + 1 == words.size())
            throw UsageError(option + " needs a value");
        apply(option, equals == std::string::npos ? words[++i] : words[i].substr(equals + 1),
              arguments);
    }
    if (arguments.port != 0 && arguments.server)
        throw UsageError("--port is for the robot's own server: write --connect HOST:PORT");
    return arguments;
}

std::string helpText()
{
    return "Usage: tarvek-robot [OPTION]...\n"
           "A simulated robot: publishes the memory of a walking robot, over and over.\n"
           "\n"
           "It starts a private Redis server on this machine for that, prints\n"
           "\"listening on 127.0.0.1:PORT\" when its keys can be read, and runs until Ctrl-C.\n"
           "\n"
           "  --port PORT            port of the private server (default: a free one)\n"
           "  --connect HOST[:PORT]  publish to a server that runs already (port 6379)\n"
           "  --rate HZ              times per second that all keys are written, 0.1 to 1000\n"
           "                         (default 50); a machine too slow for it skips some\n"
           "  --keys N               how many keys, 1 to 100000 (default 200)\n"
           "  --seed S               another seed, a slightly different robot (default 1)\n"
           "  --help                 this text\n"
           "  --version              the version\n"
           "\n"
           "Example: tarvek-robot --port 6380, then: redis-cli -p 6380 GET Battery/Charge\n";
}
