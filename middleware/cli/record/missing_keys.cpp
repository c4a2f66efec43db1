// SPDX-License-Identifier: MIT
#include "missing_keys.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t mostNamed = 5;

std::string namesOf(const std::vector<std::string>& keys)
{
    std::string names;
    for (std::size_t i = 0; i < std::min(keys.size(), mostNamed); ++i)
        names += (i > 0 ? ", '" : "'") + keys[i] + "'";
    if (keys.size() > mostNamed)
        names += " and " + std::to_string(keys.size() - mostNamed) + " more";
    return names;
}

} // namespace

MissingKeys::MissingKeys(std::vector<std::string> keys)
    : fKeys(std::move(keys)),
      fHadValue(fKeys.size()),
      fLeft(static_cast<std::int64_t>(fKeys.size()))
{
}

std::string MissingKeys::see(const ZoListAnswer& answer)
{
    for (const int i : answer.changed) {
        const auto key = static_cast<std::size_t>(i);
        if (answer.values[i].getType() != ZoValue::Invalid && !fHadValue.at(key)) {
            fHadValue[key] = true;
            --fLeft;
        }
    }
    if (std::exchange(fHasAnswer, true) || fLeft == 0)
        return {};
    return "there is no value of " + namesOf(neverSeen()) +
           " now (is that spelled right?): what is recorded of it stays empty until there is one";
}

std::string MissingKeys::atEnd() const
{
    if (count() == 0)
        return {};
    return "there was never a value to record of " + namesOf(neverSeen());
}

std::vector<std::string> MissingKeys::neverSeen() const
{
    std::vector<std::string> keys;
    for (std::size_t i = 0; i < fKeys.size(); ++i) {
        if (!fHadValue[i])
            keys.push_back(fKeys[i]);
    }
    return keys;
}
