// SPDX-License-Identifier: MIT
// A panel on slow and broken networks: how long its window stands still, how many fetches a second
// it gets, how old the values are, and how many bytes they take, with lists that are followed
// beside plain calls. A real server, a robot that writes every 20 ms, and an emulated network.
//
//   bench_network [--seconds N] [--profile NAME] [--keys N] [--changing WHICH]
//                 [--scenes] [--smoke]
//
// Fails when a figure misses its target. The figures count the robot's own ticks of 20 ms and what
// the machine adds: run it while nothing else runs. --smoke runs a short list on two of the
// networks for a moment, to see that it works, and judges nothing. The platform is
// "offscreen" unless QT_QPA_PLATFORM names another.

#include "network/cells.h"
#include "network/scenes.h"

#include <QCommandLineParser>

#include <algorithm>
#include <cstdio>
#include <exception>

using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

struct Choice
{
    std::chrono::milliseconds time{4000}; ///< of each cell
    std::vector<NetworkProfile> profiles = networkProfiles();
    std::vector<int> keys{20, 1000, 10000};
    std::vector<Load::Changing> changing{Load::Changing::Same, Load::Changing::Other,
                                         Load::Changing::All};
    bool hasCells = true;
    bool hasScenes = true;
    bool isSmoke = false;
};

// What the words name; they throw std::runtime_error when there is no such thing.

std::vector<NetworkProfile> profilesCalled(const std::string& name)
{
    for (const NetworkProfile& profile : networkProfiles()) {
        if (profile.name == name)
            return {profile};
    }
    throw std::runtime_error("there is no network " + name +
                             ": give loopback, lan, wifi, poor or cellular to --profile");
}

std::vector<Load::Changing> changingCalled(const std::string& name)
{
    if (name == "same")
        return {Load::Changing::Same};
    if (name == "other")
        return {Load::Changing::Other};
    if (name == "all")
        return {Load::Changing::All};
    throw std::runtime_error("give same, other or all to --changing, not " + name);
}

Choice choiceOf(const QStringList& words)
{
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({{"seconds", "How long each cell takes, 4 by default.", "N"},
                       {"profile", "This network alone.", "NAME"},
                       {"keys", "This number of keys alone, without scenes.", "N"},
                       {"changing", "This alone, without scenes: same, other or all.", "WHICH"},
                       {"scenes", "The scenes alone."},
                       {"smoke", "A part of it for a moment, to see that it works."}});
    parser.process(words);
    Choice choice;
    choice.isSmoke = parser.isSet("smoke");
    if (choice.isSmoke) {
        choice.time = milliseconds(200);
        choice.keys = {20};
        choice.profiles = {choice.profiles[0], choice.profiles[2]};
    }
    if (parser.isSet("seconds"))
        choice.time = std::max(1, parser.value("seconds").toInt()) * milliseconds(1000);
    if (parser.isSet("keys")) {
        choice.keys = {std::clamp(parser.value("keys").toInt(), 1, 99999)};
        choice.hasScenes = false;
    }
    choice.hasCells = !parser.isSet("scenes");
    if (parser.isSet("changing")) {
        choice.changing = changingCalled(parser.value("changing").toStdString());
        choice.hasScenes = false;
    }
    if (parser.isSet("profile"))
        choice.profiles = profilesCalled(parser.value("profile").toStdString());
    return choice;
}

void reportCells(const Choice& choice, const NetworkProfile& profile, LoopWatch& loop,
                 Report& report)
{
    for (const int keys : choice.keys) {
        for (const auto changing : choice.changing)
            reportCell(profile, {keys, changing}, choice.time, loop, report);
    }
}

int run(const Choice& choice, LoopWatch& loop)
{
    Report report(!choice.isSmoke);
    for (const NetworkProfile& profile : choice.profiles) {
        if (choice.hasCells)
            reportCells(choice, profile, loop, report);
        if (choice.hasScenes)
            reportScenes(profile, std::min<std::chrono::milliseconds>(choice.time, seconds(3)),
                         loop, report);
    }
    return report.end() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    WatchedApplication application(argc, argv);
    try {
        return run(choiceOf(application.arguments()), application.watch);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_network: %s\n", error.what());
        return 2;
    }
}
