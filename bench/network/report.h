// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

/// What a figure should be.
struct Target
{
    enum class Kind
    {
        AtMost,
        AtLeast
    };

    Kind kind;
    double value;

    bool isMet(double figure) const
    {
        return kind == Kind::AtMost ? figure <= value : figure >= value;
    }
    std::string text() const;
};

inline Target atMost(double value)
{
    return {Target::Kind::AtMost, value};
}
inline Target atLeast(double value)
{
    return {Target::Kind::AtLeast, value};
}

/// Prints figures, each with its target, and counts those that miss theirs.
class Report
{
public:
    using Figure = std::optional<double>; ///< none: there was nothing to measure

    /// `isJudging`: else a figure with a target must only be there.
    explicit Report(bool isJudging) : fIsJudging(isJudging) {}

    /// Of the lines that follow.
    void begin(const std::string& title);
    /// A figure with lists that are followed, which is judged, and beside it another one.
    void line(const std::string& what, const Figure& followed, const Figure& plain,
              const std::optional<Target>& target = {});

    /// Prints what was missed; whether nothing was.
    bool end() const;

private:
    const bool fIsJudging;
    std::string fTitle;
    std::vector<std::string> fMissed;
};
