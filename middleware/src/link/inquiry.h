// SPDX-License-Identifier: MIT
#pragma once

#include "link/shared_text.h"
#include "wire/reply_sink.h"

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zo {

/// Some whole commands of a request, which go out together.
struct RequestPart
{
    std::size_t end; ///< behind their bytes
    int replies;
};

/// What is asked of a robot, and who takes the replies.
class Inquiry
{
public:
    using Parts = std::shared_ptr<const std::vector<RequestPart>>;

    /// `name` is the command, for messages; `bytes` the encoded request, which is answered by
    /// `replies` replies. It goes out in one.
    Inquiry(std::string name, SharedText bytes, int replies, std::shared_ptr<ReplySink> sink)
        : fName(std::move(name)),
          fBytes(std::move(bytes)),
          fOnly{fBytes->size(), replies},
          fSink(std::move(sink))
    {
    }
    /// It goes out in `parts`, which cover all of it, and others may go out in between.
    Inquiry(std::string name, SharedText bytes, Parts parts, std::shared_ptr<ReplySink> sink)
        : fName(std::move(name)),
          fBytes(std::move(bytes)),
          fOnly{0, 0},
          fParts(std::move(parts)),
          fSink(std::move(sink))
    {
    }

    const std::string& name() const { return fName; }
    const SharedText& bytes() const { return fBytes; }
    std::size_t parts() const { return fParts ? fParts->size() : 1; }
    const RequestPart& part(std::size_t index) const { return fParts ? (*fParts)[index] : fOnly; }
    ReplySink& sink() const { return *fSink; }

private:
    const std::string fName;
    const SharedText fBytes;
    const RequestPart fOnly;
    const Parts fParts; ///< null: there is but one
    const std::shared_ptr<ReplySink> fSink;
};

} // namespace zo
