// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <exception>
#include <string>

/// What a link must never do, and did. It ends its schedule.
class Violation : public std::exception
{
public:
    /// `invariant` is a short name, the same each time; `detail` says what happened.
    Violation(const std::string& invariant, const std::string& detail)
        : fText(invariant + ": " + detail)
    {
    }

    const char* what() const noexcept override { return fText.c_str(); }

private:
    std::string fText;
};

/// `detail` makes the text, and is called only then.
template <class Detail>
void require(bool isKept, const char* invariant, Detail detail)
{
    if (!isKept)
        throw Violation(invariant, detail());
}

/// For details.
inline std::string lengthText(std::chrono::nanoseconds time)
{
    return std::to_string(std::chrono::duration<double, std::milli>(time).count()) + " ms";
}
