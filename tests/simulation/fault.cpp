// SPDX-License-Identifier: MIT
#include "simulation/fault.h"

const char* nameOf(LinkDoing doing)
{
    static constexpr const char* names[] = {"waiting", "lookup", "connect", "secure", "greet",
                                            "idle",    "busy",   "refused", "stopped"};
    return names[static_cast<int>(doing)];
}

const char* nameOf(Fault fault)
{
    static constexpr const char* names[] = {"none",
                                            "connects hang",
                                            "connects are refused",
                                            "connects are slow",
                                            "look-ups fail",
                                            "look-ups hang",
                                            "addresses change",
                                            "look-up answers late",
                                            "network goes silent",
                                            "connection breaks",
                                            "connection is closed",
                                            "bytes drip",
                                            "writes are slow",
                                            "TLS is slow",
                                            "TLS is refused",
                                            "TLS is closed",
                                            "robot hangs",
                                            "robot dies",
                                            "robot restarts empty",
                                            "password changes",
                                            "robot is loading",
                                            "robot forbids",
                                            "robot is full",
                                            "garbage",
                                            "large value",
                                            "too many elements",
                                            "too few elements",
                                            "surplus reply",
                                            "push",
                                            "push inside a reply",
                                            "reply breaks off",
                                            "reply comes early",
                                            "death inside a reply",
                                            "clock jumps",
                                            "woken late",
                                            "woken for nothing",
                                            "other connection",
                                            "many calls",
                                            "call comes too late",
                                            "call is given up",
                                            "driver fails",
                                            "memory runs out",
                                            "other settings",
                                            "stop"};
    return names[static_cast<int>(fault)];
}

namespace {

bool isUp(LinkDoing doing)
{
    return doing == LinkDoing::Idle || doing == LinkDoing::Busy;
}

const char* unless(bool isPossible, const char* reason)
{
    return isPossible ? nullptr : reason;
}

} // namespace

const char* whyImpossible(Fault fault, LinkDoing doing)
{
    const bool isTalking = doing == LinkDoing::Greeting || isUp(doing);
    const bool isSecuring = doing == LinkDoing::Securing;
    const bool isOver = doing == LinkDoing::Refused || doing == LinkDoing::Stopped;
    switch (fault) {
    case Fault::None:
        return "it is no fault";
    case Fault::ConnectionBreaks:
    case Fault::ConnectionIsClosed:
        return unless(isTalking || isSecuring || doing == LinkDoing::Connecting,
                      "there is no connection");
    case Fault::TlsIsSlow:
    case Fault::TlsIsRefused:
    case Fault::TlsIsClosed:
        return unless(isSecuring, "nobody agrees on encryption");
    case Fault::Garbage:
    case Fault::SurplusReply:
    case Fault::Push:
    case Fault::ReplyBreaksOff:
    case Fault::DeathInsideReply:
        return unless(isTalking, "the robot has no word");
    case Fault::LargeValue:
    case Fault::TooManyElements:
    case Fault::TooFewElements:
    case Fault::PushInsideReply:
        return unless(doing == LinkDoing::Busy, "nobody asks for values");
    case Fault::ReplyComesEarly:
        return unless(doing == LinkDoing::Busy, "no request is long");
    case Fault::WokenLate:
        return unless(!isOver, "nothing is due");
    case Fault::MemoryRunsOut:
        return unless(!isOver, "it needs none");
    case Fault::Stop:
        return unless(doing != LinkDoing::Stopped, "it is stopped once");
    default:
        return nullptr;
    }
}
