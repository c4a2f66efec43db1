// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_set>
#include <vector>

namespace zo {

/// The keys that the robot has refused to this link's user: they are not asked for again on the
/// same connection for a while. Rights may change. May be used from any thread.
class ForbiddenKeys
{
public:
    using Set = std::unordered_set<std::string>;
    using Time = std::chrono::steady_clock::time_point;

    /// After so long all are asked for again.
    static constexpr std::chrono::seconds fMemory{10};

    /// The keys known at `now` on the link's connection number `connection`. Never changes; a
    /// later call returns another set when others are known.
    std::shared_ptr<const Set> known(int connection, Time now);
    /// `keys` were refused on that connection. Ignored when there has been a newer one.
    void add(const std::vector<std::string>& keys, int connection, Time now);

private:
    void forgetOld(int connection, Time now);

    std::mutex fMutex;
    std::shared_ptr<const Set> fKnown = std::make_shared<const Set>();
    int fConnection = 0;
    Time fSince; ///< when the first of them was refused
};

} // namespace zo
