// SPDX-License-Identifier: MIT
#pragma once

#include "wire/reply_sink.h"

#include <zo/value.h>

#include <optional>
#include <string>

namespace zo {

/// Takes the one reply to a command that returns a value, or an error of the server.
class ExchangeSink : public ReplySink
{
public:
    explicit ExchangeSink(std::string command);

    const ZoValue& value() const { return fValue; }
    const std::optional<std::string>& refusal() const { return fRefusal; }

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override;
    std::string nameOf(const ReplyPlace& place) const override;

private:
    const std::string fCommand;
    ZoValue fValue;
    std::optional<std::string> fRefusal;
};

} // namespace zo
