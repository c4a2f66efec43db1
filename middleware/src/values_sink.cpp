#include "values_sink.h"

#include "json.h"
#include "peer.h"

#include <zo/error.h>

#include <utility>

ValuesSink::ValuesSink(std::shared_ptr<const ListRequest> request, ZoValue::Elements values)
    : fRequest(std::move(request)), fValues(std::move(values))
{
}

void ValuesSink::takeArray(const ReplyPlace& place, int size)
{
    expectDepth(place, 0);
    const int asked = fRequest->sizeOfReply(place.reply);
    if (size != asked)
        throw ZoError("malformed reply to MGET: " + std::to_string(size) + " values for " +
                      std::to_string(asked) + " keys");
}

void ValuesSink::takeText(const ReplyPlace& place, std::string_view text)
{
    expectDepth(place, 1);
    fValues[fRequest->position(place.reply, place.index)] = decodeJson(text);
}

void ValuesSink::takeInteger(const ReplyPlace&, long long)
{
    throw ZoError("malformed reply to MGET: a bare number");
}

void ValuesSink::takeNil(const ReplyPlace& place)
{
    expectDepth(place, 1);
    fValues[fRequest->position(place.reply, place.index)] = ZoValue();
}

void ValuesSink::takeError(const ReplyPlace& place, std::string_view text)
{
    expectDepth(place, 0);
    fRefusals.push_back({place.reply, std::string(text)});
}

std::string ValuesSink::nameOf(const ReplyPlace& place) const
{
    if (place.depth != 1)
        return "the reply to MGET";
    return "the value of " + quotedKey(fRequest->key(fRequest->position(place.reply, place.index)));
}

void ValuesSink::expectDepth(const ReplyPlace& place, int depth)
{
    if (place.depth != depth)
        throw ZoError("malformed reply to MGET: not an array of values");
}
