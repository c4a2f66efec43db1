// SPDX-License-Identifier: MIT
#pragma once

#include <zo/value.h>

#include <deque>
#include <mutex>
#include <vector>

namespace zo {

/// The last answers to some requests, to tell what has changed in the next ones. May be used from
/// any thread.
class LastAnswers
{
public:
    /// Remembers those to so many requests: the ones that came last.
    explicit LastAnswers(int most) : fMost(static_cast<std::size_t>(most)) {}

    /// The positions at which `values`, the answer to `request`, is another than the last one,
    /// which it replaces; all positions when there was none.
    std::vector<int> changed(const ZoValue& request, const ZoValue& values);

private:
    struct Answer
    {
        ZoValue request;
        ZoValue values;
    };

    const std::size_t fMost;
    std::mutex fMutex;           ///< guards fAnswers
    std::deque<Answer> fAnswers; ///< the one that came last is the last
};

} // namespace zo
