// SPDX-License-Identifier: MIT
#pragma once

#include "link/inquiry.h"
#include "memory/forbidden_keys.h"

#include <zo/value.h>

#include <memory>
#include <string>
#include <vector>

namespace zo {

/// A request for the values of a list of keys, encoded. Never changes, so that a poll of the same
/// keys sends the same bytes again.
class ListRequest
{
public:
    /// What `request`, the argument of getListData, asks for, without the keys in `forbidden` and
    /// those that cannot be keys: their values stay invalid. On the server the keys are behind
    /// `prefix`. Throws ZoError when it is malformed.
    ListRequest(const ZoValue& request, std::shared_ptr<const ForbiddenKeys::Set> forbidden,
                std::string prefix = {});

    /// Of which node keys are asked: the one that has them, or the one that they are moving to.
    enum class At
    {
        Owner,
        Importer
    };
    /// The keys that the replies numbered `replies` of `request` stand for, each asked by itself.
    ListRequest(const ListRequest& request, const std::vector<int>& replies, At node = At::Owner);

    /// Whether this is the encoding of `request` as long as `forbidden` holds.
    bool isFor(const ZoValue& request, const ForbiddenKeys::Set* forbidden) const;

    const SharedText& bytes() const { return fBytes; }
    /// Its commands, one by one.
    const Inquiry::Parts& parts() const { return fParts; }
    int replies() const;
    int sizeOfReply(int reply) const;
    /// Index in the whole request of element `index` of reply number `reply`.
    int position(int reply, int index) const { return fAsked[reply * fKeysPerReply + index]; }
    /// The key at `position` of the whole request.
    const std::string& key(int position) const { return (*fKeys)[position]; }
    int count() const { return static_cast<int>(fKeys->size()); }

private:
    void encode(At node = At::Owner);

    std::string fPrefix;
    std::shared_ptr<const std::vector<std::string>> fKeys;
    std::shared_ptr<const ForbiddenKeys::Set> fForbidden;
    std::vector<int> fAsked;
    int fKeysPerReply;
    SharedText fBytes;
    Inquiry::Parts fParts;
};

} // namespace zo
