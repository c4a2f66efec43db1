#pragma once

#include "list_request.h"
#include "wire/reply_sink.h"

#include <zo/value.h>

#include <memory>
#include <string>
#include <vector>

/// Takes the values that a list request asks for, decoding each as it arrives.
class ValuesSink : public ReplySink
{
public:
    /// A reply that was an error of the server.
    struct Refusal
    {
        int reply;
        std::string text;
    };

    /// `values` has an element for each key of the whole request; those asked for are replaced.
    ValuesSink(std::shared_ptr<const ListRequest> request, ZoValue::Elements values);

    const std::vector<Refusal>& refusals() const { return fRefusals; }
    ZoValue::Elements takeValues() { return std::move(fValues); }

    [[nodiscard]] bool take(const ReplyPlace& place, const ReplyPiece& piece) override;
    std::string nameOf(const ReplyPlace& place) const override;

private:
    bool takeReply(int reply, const ReplyPiece& piece);

    const std::shared_ptr<const ListRequest> fRequest;
    ZoValue::Elements fValues;
    std::vector<Refusal> fRefusals;
};
