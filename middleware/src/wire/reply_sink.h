// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace zo {

/// Where in the replies of an exchange a piece stands.
struct ReplyPlace
{
    int reply; ///< number of the reply, from 0; of a push: of the reply that comes after it
    int depth; ///< 0: the reply itself; 1: an element of it; ...
    int index; ///< among its siblings, from 0; keys and values of a map alternate
};

enum class ReplyKind
{
    Status, ///< a line: "OK"
    Error,
    Integer,
    Text,
    Nil,
    Boolean,
    Double,
    BigNumber,
    Verbatim, ///< a text for people
    TooLarge, ///< a text that was skipped because of its size
    Array,
    Map,
    Set,
    Push ///< what the server sends unasked
};

/// What a piece is, for messages: "a number".
const char* nameOf(ReplyKind kind);

/// What is wrong with a reply to `command` that has a piece of this kind where none belongs.
std::string misplaced(const std::string& command, ReplyKind kind);

/// One piece of a reply. The elements of an array, a map, a set or a push follow it as pieces of
/// their own.
struct ReplyPiece
{
    ReplyKind kind;
    /// Of every kind that is a text, a line, or a number with more digits than `number` holds.
    /// Only there until the sink returns.
    std::string_view text = {};
    /// The integer; 0 or 1 for a boolean; how many elements follow, or pairs of a map; how many
    /// bytes were skipped.
    std::int64_t number = 0;
    double real = 0; ///< the double
};

/// Takes replies piece by piece, as they arrive, on the I/O thread.
class ReplySink
{
public:
    ReplySink() = default;
    virtual ~ReplySink() = default;
    ReplySink(const ReplySink&) = delete;
    ReplySink& operator=(const ReplySink&) = delete;

    /// False: the piece is refused, which ends the connection, and `problem` says why.
    [[nodiscard]] virtual bool take(const ReplyPlace& place, const ReplyPiece& piece) = 0;
    const std::string& problem() const { return fProblem; }

    /// What a piece is, for messages: "the value of \"Arm/Angle\"".
    virtual std::string nameOf(const ReplyPlace& place) const = 0;

protected:
    /// For `take` to return.
    bool refuse(std::string problem)
    {
        fProblem = std::move(problem);
        return false;
    }

private:
    std::string fProblem;
};

} // namespace zo
