// SPDX-License-Identifier: MIT
#pragma once

/// What a link can be doing, with the two ways of being up told apart.
enum class LinkDoing
{
    Waiting, ///< for the next attempt
    LookingUp,
    Connecting,
    Securing,
    Greeting,
    Idle, ///< up, without calls
    Busy, ///< up, with calls under way
    Refused,
    Stopped
};
constexpr int linkDoings = 9;
const char* nameOf(LinkDoing doing);

/// What goes wrong, or at least not as usual.
enum class Fault
{
    None,
    // of the way to the robot
    ConnectsHang,
    ConnectsAreRefused,
    ConnectsAreSlow,
    LookUpsFail,
    LookUpsHang,
    AddressesChange,
    LookUpAnswersLate,
    NetworkGoesSilent,
    ConnectionBreaks,
    ConnectionIsClosed,
    BytesDrip,
    WritesAreSlow,
    TlsIsSlow,
    TlsIsRefused,
    TlsIsClosed,
    // of the robot
    RobotHangs,
    RobotDies,
    RobotRestartsEmpty,
    PasswordChanges,
    RobotIsLoading,
    RobotForbids,
    RobotIsFull,
    Garbage,
    LargeValue,
    TooManyElements,
    TooFewElements,
    SurplusReply,
    Push,
    PushInsideReply,
    ReplyBreaksOff,
    ReplyComesEarly,
    DeathInsideReply,
    // of the machine's own side
    ClockJumps,
    WokenLate,
    WokenForNothing,
    EventOfOtherConnection,
    ManyCalls,
    CallComesTooLate,
    CallIsGivenUp,
    DriverFails,
    MemoryRunsOut,
    OtherSettings,
    Stop
};
constexpr int faults = static_cast<int>(Fault::Stop) + 1;
const char* nameOf(Fault fault);

/// Why the fault cannot meet a link that is doing so; null: it can.
const char* whyImpossible(Fault fault, LinkDoing doing);
