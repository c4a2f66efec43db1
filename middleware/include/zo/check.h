// SPDX-License-Identifier: MIT
#pragma once

#include <zo/address.h>
#include <zo/broker_options.h>
#include <zo/export.h>

#include <functional>
#include <string>

/// What works with a robot's memory and what does not, found out step by step on a connection of
/// its own. For people who set up a robot; a broker does all this by itself.
class ZO_EXPORT ZoCheck
{
public:
    /// The steps, in their order. The first seven must succeed for any other to be made.
    enum class Subject
    {
        LookUp,     ///< which addresses the host has
        Connection, ///< which of them can be reached
        Tls,        ///< encryption, and whose certificate it is
        Answer,     ///< whether what listens there is a robot's memory
        Readiness,  ///< whether it is past its own start, and whatever else keeps it from answering
        Login,
        Node,   ///< which node has the keys; only of clusters, and with sentinels
        Rights, ///< to list the keys, and to read some of them
        Server, ///< what it is, and its version
        Keys,   ///< how many there are
        RoundTrip,
        Notices ///< whether the server tells what was written
    };
    enum class Outcome
    {
        Ok,
        Failed,
        Skipped ///< not possible, or not wanted; all else works without
    };
    struct Step
    {
        Subject subject;
        Outcome outcome;
        std::string text; ///< what was found, or the cause; without the password
    };
    using Tell = std::function<void(const Step& step)>;
    using GoOn = std::function<bool()>;

    /// Tries to reach the memory at `robot` in the way that `options` say, and tells each step when
    /// it is over. Whether none of them failed. Several addresses are tried one after the other.
    /// Takes `connectTimeout` at most for each of the robot's addresses and each answer behind
    /// that, of which most steps need one, and as long as the system's look-up and the list of keys
    /// take. Throws ZoError when `robot` can be no address or a file that `options` name is no
    /// good, and what `tell` throws.
    ///
    /// `goOn`, if there is one, is asked ten times a second: when it says no, the check ends with
    /// the step that it is at, which failed.
    static bool run(const ZoAddress& robot, const ZoBrokerOptions& options, const Tell& tell,
                    const GoOn& goOn = {});
};
