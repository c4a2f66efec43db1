// SPDX-License-Identifier: MIT
#pragma once

#include <iostream>
#include <sstream>
#include <string>

/// Catches what is written to std::cerr for as long as it lives.
class CapturedStderr
{
public:
    CapturedStderr() : fPrevious(std::cerr.rdbuf(fText.rdbuf())) {}
    ~CapturedStderr() { std::cerr.rdbuf(fPrevious); }
    CapturedStderr(const CapturedStderr&) = delete;
    CapturedStderr& operator=(const CapturedStderr&) = delete;

    std::string text() const { return fText.str(); }

private:
    std::ostringstream fText;
    std::streambuf* fPrevious;
};
