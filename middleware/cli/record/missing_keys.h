// SPDX-License-Identifier: MIT
#pragma once

#include <zo/list_answer.h>

#include <cstdint>
#include <string>
#include <vector>

/// Which keys of a recording the robot does not have: one that is mistyped would be nothing but an
/// empty column.
class MissingKeys
{
public:
    MissingKeys() = default;
    explicit MissingKeys(std::vector<std::string> keys);

    /// Takes note of an answer about the keys. Returns what the user is to be told; empty: nothing.
    std::string see(const ZoListAnswer& answer);
    /// The same when no more answers come.
    std::string atEnd() const;
    /// How many have had no value so far; 0 before the first answer.
    std::int64_t count() const { return fHasAnswer ? fLeft : 0; }

private:
    std::vector<std::string> neverSeen() const;

    std::vector<std::string> fKeys;
    std::vector<bool> fHadValue; ///< by key
    std::int64_t fLeft = 0;      ///< of these that did not
    bool fHasAnswer = false;
};
