// SPDX-License-Identifier: MIT
#pragma once

#include "simulation/fault.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What a reply, or whatever a robot sends instead, means for a link.
enum class Word
{
    Fine,
    Passing,    ///< an error that passes by itself
    NeedsLogin, ///< NOAUTH
    NoRight,    ///< NOPERM
    Refusal,    ///< any other error
    Push,
    Part,  ///< of something that has no end
    Spoilt ///< no reply at all: the link must notice
};

/// One thing that a robot has said on a connection.
struct Saying
{
    std::size_t begin; ///< in all that was ever said there
    std::size_t end;
    Word word;
    Fault fault; ///< that it is an instance of
};

/// What has just come out of a stream.
struct Arrival
{
    std::string_view bytes;
    const Saying* first; ///< of those that are whole now ...
    const Saying* last;  ///< ... and behind the last of them
    int begun;           ///< replies, of all that were ever said there: a byte of each is there
    bool mayNotice;      ///< some of what is spoilt is there
    bool mustNotice;     ///< all of it is
};

/// What a robot says on a connection, and how far it has got on its way to the link.
class AnswerStream
{
public:
    void say(std::string_view bytes, Word word, Fault fault = Fault::None);
    std::size_t waiting() const { return fBytes.size() - (fArrived - fForgotten); }
    /// The next `size` bytes, until the next call of any operation.
    Arrival arrive(std::size_t size);

private:
    void forgetOld();
    bool isReply(const Saying& saying) const;

    std::string fBytes; ///< behind fForgotten
    std::size_t fForgotten = 0;
    std::size_t fArrived = 0; ///< of all
    std::vector<Saying> fSayings;
    std::size_t fWhole = 0;  ///< so many sayings have arrived
    std::size_t fLooked = 0; ///< so many have begun to
    int fBegun = 0;          ///< replies, ever
};
