#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <unordered_set>
#include <vector>

/// The keys that the robot has refused to this link's user: they are not asked for again.
/// May be used from any thread.
class ForbiddenKeys
{
public:
    using Set = std::unordered_set<std::string>;

    /// The keys known so far. Never changes; a later call returns another set when more are known.
    std::shared_ptr<const Set> known() const;
    void add(const std::vector<std::string>& keys);

private:
    mutable std::mutex fMutex;
    std::shared_ptr<const Set> fKnown = std::make_shared<const Set>();
};
