// SPDX-License-Identifier: MIT
#pragma once

#include "wire/reply_sink.h"

#include <string>
#include <vector>

namespace zo {

/// Takes one page of the key list: where the next page begins, and the names on this one.
class NamesSink : public ReplySink
{
public:
    const std::string& cursor() const { return fCursor; }
    std::vector<std::string>& names() { return fNames; }
    /// The server's error instead of a page; empty when there is a page.
    const std::string& refusal() const { return fRefusal; }

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override;
    std::string nameOf(const ReplyPlace& place) const override;

private:
    bool takeElements(const ReplyPlace& place, const ReplyPiece& piece);
    bool takeText(const ReplyPlace& place, std::string_view text);

    std::string fCursor;
    std::vector<std::string> fNames;
    std::string fRefusal;
};

} // namespace zo
