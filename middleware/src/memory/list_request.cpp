// SPDX-License-Identifier: MIT
#include "memory/list_request.h"

#include "memory/behind_asking.h"
#include "memory/key_text.h"
#include "memory/keys_per_command.h"
#include "memory/memory_arguments.h"
#include "wire/request.h"

#include <zo/error.h>

#include <algorithm>
#include <utility>

namespace zo {

namespace {

std::vector<std::string> keysOf(const ZoValue& request)
{
    std::vector<std::string> keys;
    const int count = requestedCount(request);
    keys.reserve(count);
    for (int i = 0; i < count; ++i)
        keys.push_back(requestedKey(request, i));
    return keys;
}

} // namespace

ListRequest::ListRequest(const ZoValue& request,
                         std::shared_ptr<const ForbiddenKeys::Set> forbidden, std::string prefix)
    : fPrefix(std::move(prefix)),
      fKeys(std::make_shared<const std::vector<std::string>>(keysOf(request))),
      fForbidden(std::move(forbidden)),
      fKeysPerReply(keysPerCommand)
{
    fAsked.reserve(fKeys->size());
    for (int i = 0; i < count(); ++i) {
        // One absurd key in a list must not cost the values of the others.
        if (canBeKey(fPrefix, key(i)) && fForbidden->count(key(i)) == 0)
            fAsked.push_back(i);
    }
    encode();
}

ListRequest::ListRequest(const ListRequest& request, const std::vector<int>& replies, At node)
    : fPrefix(request.fPrefix),
      fKeys(request.fKeys),
      fForbidden(request.fForbidden),
      fKeysPerReply(1)
{
    for (const int reply : replies) {
        for (int i = 0; i < request.sizeOfReply(reply); ++i)
            fAsked.push_back(request.position(reply, i));
    }
    encode(node);
}

bool ListRequest::isFor(const ZoValue& request, const ForbiddenKeys::Set* forbidden) const
{
    if (forbidden != fForbidden.get() || requestedCount(request) != count())
        return false;
    for (int i = 0; i < count(); ++i) {
        if (requestedKey(request, i) != key(i))
            return false;
    }
    return true;
}

int ListRequest::replies() const
{
    const int asked = static_cast<int>(fAsked.size());
    return (asked + fKeysPerReply - 1) / fKeysPerReply;
}

int ListRequest::sizeOfReply(int reply) const
{
    const int before = reply * fKeysPerReply;
    return std::min(fKeysPerReply, static_cast<int>(fAsked.size()) - before);
}

void ListRequest::encode(At node)
{
    std::string bytes;
    std::vector<RequestPart> parts;
    for (int reply = 0; reply < replies(); ++reply) {
        const int keys = sizeOfReply(reply);
        if (node == At::Importer)
            appendAsking(bytes);
        beginCommand(static_cast<std::size_t>(keys) + 1, bytes);
        appendWord("MGET", bytes);
        for (int i = 0; i < keys; ++i)
            appendWord(fPrefix, key(position(reply, i)), bytes);
        parts.push_back(
            {bytes.size(), node == At::Importer ? BehindAsking::fRepliesPerCommand : 1});
    }
    fBytes = sharedText(std::move(bytes));
    fParts = std::make_shared<const std::vector<RequestPart>>(std::move(parts));
}

} // namespace zo
