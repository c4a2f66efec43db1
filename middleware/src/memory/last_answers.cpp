// SPDX-License-Identifier: MIT
#include "memory/last_answers.h"

#include <algorithm>
#include <numeric>

namespace zo {

namespace {

/// Makes `old` equal to `fresh`, an array of the same size, and tells where it was not.
std::vector<int> update(ZoValue& old, const ZoValue& fresh)
{
    std::vector<int> changed;
    for (int i = 0; i < fresh.getSize(); ++i) {
        if (old[i] == fresh[i])
            continue;
        old[i] = fresh[i];
        changed.push_back(i);
    }
    return changed;
}

} // namespace

std::vector<int> LastAnswers::changed(const ZoValue& request, const ZoValue& values)
{
    const std::lock_guard<std::mutex> lock(fMutex);
    const auto found = std::find_if(fAnswers.begin(), fAnswers.end(), [&](const Answer& one) {
        return one.values.getSize() == values.getSize() && one.request == request;
    });
    if (found != fAnswers.end()) {
        std::rotate(found, found + 1, fAnswers.end());
        return update(fAnswers.back().values, values);
    }
    fAnswers.push_back({request, values});
    if (fAnswers.size() > fMost)
        fAnswers.pop_front();
    std::vector<int> all(static_cast<std::size_t>(values.getSize()));
    std::iota(all.begin(), all.end(), 0);
    return all;
}

} // namespace zo
