// SPDX-License-Identifier: MIT
#pragma once

#include "link/deadline.h"
#include "memory/list_request.h"
#include "wire/reply_sink.h"

#include <zo/value.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zo {

/// Takes the values that a list request asks for, decoding each as it arrives.
class ValuesSink : public ReplySink
{
public:
    /// How many elements the arrays among the values may have, together; the array that goes beyond
    /// is invalid alone. Replies of 64 MiB have fewer when their numbers have all digits, and would
    /// become 1.3 GB of values when they are all zeros.
    static constexpr std::int64_t fMaxElements = std::int64_t{1} << 22;

    using Time = SteadyClock::time_point;

    /// A reply that was an error of the server.
    struct Refusal
    {
        int reply;
        std::string text;
    };

    /// `values` has an element for each key of the whole request; those asked for are replaced.
    ValuesSink(std::shared_ptr<const ListRequest> request, ZoValue::Elements values);

    /// When the last reply was all here; Time::max(): it is not yet. May be asked from any thread:
    /// then nothing else changes any more.
    Time wholeAt() const { return fWholeAt; }
    const std::shared_ptr<const ListRequest>& request() const { return fRequest; }
    const std::vector<Refusal>& refusals() const { return fRefusals; }
    /// How many values are left out because of their size.
    int tooLarge() const { return fTooLarge; }
    ZoValue::Elements takeValues() { return std::move(fValues); }

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override;
    std::string nameOf(const ReplyPlace& place) const override;

private:
    bool takePiece(const ReplyPlace& place, const ReplyPiece& piece);
    bool takeReply(int reply, const ReplyPiece& piece);
    bool isLast(const ReplyPlace& place, const ReplyPiece& piece) const;

    const std::shared_ptr<const ListRequest> fRequest;
    ZoValue::Elements fValues;
    std::int64_t fElements = fMaxElements; ///< that may still come
    std::vector<Refusal> fRefusals;
    int fTooLarge = 0;
    std::atomic<Time> fWholeAt{Time::max()};
};

} // namespace zo
