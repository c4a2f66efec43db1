// SPDX-License-Identifier: MIT
#pragma once

#include "wire/reply_sink.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zo {

/// The question for a page of the key list with so many names or about that: `kind` is that of the
/// keys, any when it is empty, and `pattern` that of their names.
std::string encodeScan(std::string_view cursor, int names, std::string_view kind,
                       std::string_view pattern = {});

/// Takes one page of the key list: where the next page begins, and the names on this one.
class NamesSink : public ReplySink
{
public:
    const std::string& cursor() const { return fCursor; }
    std::vector<std::string>& names() { return fNames; }
    /// Whether the page was so large that some names are not there.
    bool isCut() const { return fIsCut; }
    /// Whether the server does not understand that only keys of a kind are wanted, as before 6.0.
    bool knowsNoKinds() const { return fRefusal == "ERR syntax error"; }
    /// The server's error instead of a page; empty when there is a page.
    const std::string& refusal() const { return fRefusal; }

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override;
    std::string nameOf(const ReplyPlace& place) const override;

private:
    bool takeElements(const ReplyPlace& place, const ReplyPiece& piece);
    bool takeText(const ReplyPlace& place, std::string_view text);
    bool takeTooLarge(std::int64_t size);

    std::string fCursor;
    std::vector<std::string> fNames;
    bool fIsCut = false;
    std::string fRefusal;
};

/// The question for all keys of a cluster's slot, and whether the node still has `key`, which is in
/// it: or else it would know none.
std::string encodeKeysInSlot(int slot, std::string_view key);

/// Takes the answer to both.
class SlotNamesSink : public ReplySink
{
public:
    std::vector<std::string>& names() { return fNames; }
    /// Whether some names are not there: there are too many.
    bool isCut() const;
    /// The server's errors to any of it.
    const std::vector<std::string>& refusals() const { return fRefusals; }

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override;
    std::string nameOf(const ReplyPlace& place) const override;

private:
    std::vector<std::string> fNames;
    bool fIsCut = false;
    std::vector<std::string> fRefusals;
};

} // namespace zo
