// SPDX-License-Identifier: MIT
#pragma once

#include "wire/reply_sink.h"

#include <functional>
#include <string>
#include <utility>

namespace zo {

/// Takes what a server sends unasked, on the I/O thread: notices of keys that may have changed.
/// What else it may send is of no interest.
class NoticeSink : public ReplySink
{
public:
    /// Is told of each key that may have changed; null: of all of them.
    using Changed = std::function<void(const std::string* key)>;

    explicit NoticeSink(Changed changed) : fChanged(std::move(changed)) {}

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override;
    std::string nameOf(const ReplyPlace& place) const override;

private:
    const Changed fChanged;
    bool fIsNotice = false; ///< the push that comes just now
};

} // namespace zo
