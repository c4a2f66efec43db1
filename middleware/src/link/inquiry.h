// SPDX-License-Identifier: MIT
#pragma once

#include "link/shared_text.h"
#include "wire/reply_sink.h"

#include <memory>
#include <string>
#include <utility>

namespace zo {

/// What is asked of a robot, and who takes the replies.
class Inquiry
{
public:
    /// `name` is the command, for messages; `bytes` the encoded request, which is answered by
    /// `replies` replies.
    Inquiry(std::string name, SharedText bytes, int replies, std::shared_ptr<ReplySink> sink)
        : fName(std::move(name)),
          fBytes(std::move(bytes)),
          fReplies(replies),
          fSink(std::move(sink))
    {
    }

    const std::string& name() const { return fName; }
    const SharedText& bytes() const { return fBytes; }
    int replies() const { return fReplies; }
    ReplySink& sink() const { return *fSink; }

private:
    const std::string fName;
    const SharedText fBytes;
    const int fReplies;
    const std::shared_ptr<ReplySink> fSink;
};

} // namespace zo
