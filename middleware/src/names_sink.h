#pragma once

#include "reply_sink.h"

#include <string>
#include <vector>

/// Takes one page of the key list: where the next page begins, and the names on this one.
class NamesSink : public ReplySink
{
public:
    const std::string& cursor() const { return fCursor; }
    std::vector<std::string>& names() { return fNames; }
    /// The server's error instead of a page; empty when there is a page.
    const std::string& refusal() const { return fRefusal; }

    void takeArray(const ReplyPlace& place, int size) override;
    void takeText(const ReplyPlace& place, std::string_view text) override;
    void takeInteger(const ReplyPlace& place, long long number) override;
    void takeNil(const ReplyPlace& place) override;
    void takeError(const ReplyPlace& place, std::string_view text) override;
    std::string nameOf(const ReplyPlace& place) const override;

private:
    std::string fCursor;
    std::vector<std::string> fNames;
    std::string fRefusal;
};
