// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/answer_stream.h"
#include "simulation/random.h"
#include "simulation/robot_memory.h"
#include "simulation/simulated_cluster.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// One client as the robot sees it.
struct RobotSession
{
    bool isLoggedIn = false;
    bool hangsUp = false;              ///< when all that was said has arrived
    bool isMute = false;               ///< the robot neither reads nor says anything any more
    bool isAhead = false;              ///< what comes first has its reply already
    std::string input;                 ///< not yet a whole command
    SimulatedCluster::Address address; ///< of the node that it is with, if there are several
    AnswerStream answers;
};

/// A robot's memory server: the few commands that a link uses, answered like the real server
/// answers them, and now and then not quite like that.
class SimulatedRobot
{
public:
    struct Rules
    {
        std::string password; ///< empty: everybody may come in
        std::string user;     ///< who has this password, besides the one without a name
        bool isLoading = false;
        bool isFull = false;          ///< no more clients
        int forbiddenKey = -1;        ///< -1: none
        std::string forbiddenCommand; ///< as the server's messages name it; empty: none
        std::string prefix;           ///< of its keys; the others on the server are another's
    };

    using Words = std::vector<std::string_view>;

    SimulatedRobot(const Agenda& agenda, Random& random, Rules robotRules, int keys)
        : memory(agenda, keys), rules(std::move(robotRules)), fRandom(random)
    {
    }

    /// A client comes.
    void welcome(RobotSession& session) const;
    /// Does what a client's bytes ask for.
    void receive(RobotSession& session, std::string_view bytes);
    /// Tells `session` something that it did not ask for.
    void push(RobotSession& session);

    RobotMemory memory;
    Rules rules;
    Fault nextReply = Fault::None; ///< what goes wrong with the next reply for which it can
    bool lives = false;            ///< its values change by themselves
    const SimulatedCluster* cluster = nullptr; ///< whose nodes stand for it; null: it is alone

private:
    void execute(RobotSession& session, const Words& words);
    void answer(RobotSession& session, const Words& words, std::string_view name);
    void answerAsNode(RobotSession& session, std::string_view name);
    void answerEarly(RobotSession& session, std::size_t arrived);
    void logIn(RobotSession& session, const Words& words);
    void values(RobotSession& session, const Words& words);
    void listValues(const Words& words, std::size_t announced, std::string_view inside = {});
    void names(RobotSession& session, const Words& words);
    void namesInSlot(RobotSession& session);
    std::string redirection(const RobotSession& session, const Words& words) const;
    bool isOwn(std::string_view name) const;
    int numberOf(std::string_view name) const;
    void store(const Words& words);
    bool spoilValues(RobotSession& session, const Words& words);
    bool isForbidden(std::string_view name) const { return name == rules.forbiddenCommand; }
    bool asksForForbidden(const Words& words, std::string_view name) const;
    void appendValue(std::string_view key);
    void say(RobotSession& session, std::string_view reply, Word word = Word::Fine);
    void fail(RobotSession& session, const std::string& text);

    Random& fRandom;
    std::string fReply; ///< while it is made
};
