// SPDX-License-Identifier: MIT
#pragma once

#include <kit/descriptor.h>
#include <kit/temporary_folder.h>

#include <zo/address.h>

#include <atomic>
#include <chrono>
#include <list>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// Whoever starts this program with that variable set, in place of a program for SSH_ASKPASS, is an
/// ssh with a question for the user.
constexpr char answersSshVariable[] = "TARVEK_ANSWERS_SSH";

/// The way to a robot behind another host: a Unix socket that only this user can reach, and for
/// each connection to it one `ssh -W` of the system, which has that connection for its input and
/// output. No byte goes through this process, and the link speaks TLS with the robot itself.
///
/// The children run on a thread of this object: a window that waits for its robot does not hold
/// them up. They end with their connections, and with this object. May be used from any thread.
class SshRelay
{
public:
    /// So long after `allowQuestions` ssh may ask the user, if none that was allowed to has ended
    /// yet. Later it may not: a link that mends itself must not put up question after question.
    static constexpr std::chrono::minutes fTimeForQuestions{2};

    /// To `robot` by way of `jumpHost`, USER@HOST as ssh takes it. Throws ZoError when that can be
    /// none, and std::system_error.
    SshRelay(const std::string& jumpHost, const ZoAddress& robot);
    ~SshRelay();
    SshRelay(const SshRelay&) = delete;
    SshRelay& operator=(const SshRelay&) = delete;

    /// Of the socket.
    const std::string& path() const { return fPath; }

    void allowQuestions();

    /// What ssh said last, in lines; of a long text the end, where it says what went wrong.
    std::string lastWords() const;

private:
    using Time = std::chrono::steady_clock::time_point;
    struct Channel;

    void listen();
    void run();
    bool wait();
    void begin();
    void attend(Channel& channel);
    void hear(Channel& channel);
    std::vector<std::string> words(bool mayAsk) const;

    const std::string fJumpHost;
    const ZoAddress fRobot;
    const std::string fOwnProgram;
    const kit::TemporaryFolder fFolder;
    const std::string fPath;
    kit::Descriptor fListener;
    kit::Descriptor fEnd; ///< can be read when the thread is to end
    std::list<Channel> fChannels;
    std::atomic<Time> fQuestionsUntil;
    mutable std::mutex fMutex; ///< guards fWords
    std::string fWords;
    std::thread fThread;
};

/// Throws ZoError that says why when `text` cannot be a host to go by. Strict: ssh's own
/// configuration may hand it to a shell.
void checkJumpHost(const std::string& text);
