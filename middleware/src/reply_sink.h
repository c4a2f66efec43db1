#pragma once

#include <string>
#include <string_view>

/// Where in the replies of an exchange a piece stands.
struct ReplyPlace
{
    int reply; ///< number of the reply, from 0
    int depth; ///< 0: the reply itself; 1: an element of it; ...
    int index; ///< among its siblings, from 0; 0 at depth 0
};

/// Takes the replies of one exchange piece by piece, as they arrive, on the I/O thread.
/// An operation that throws ZoError refuses the piece; the link is closed then.
class ReplySink
{
public:
    ReplySink() = default;
    virtual ~ReplySink() = default;
    ReplySink(const ReplySink&) = delete;
    ReplySink& operator=(const ReplySink&) = delete;

    virtual void takeArray(const ReplyPlace& place, int size) = 0;
    virtual void takeText(const ReplyPlace& place, std::string_view text) = 0;
    virtual void takeInteger(const ReplyPlace& place, long long number) = 0;
    virtual void takeNil(const ReplyPlace& place) = 0;
    virtual void takeError(const ReplyPlace& place, std::string_view text) = 0;

    /// What a piece is, for messages: "the value of \"Arm/Angle\"".
    virtual std::string nameOf(const ReplyPlace& place) const = 0;
};
