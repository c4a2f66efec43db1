// SPDX-License-Identifier: MIT
#pragma once

#include "recorded_file.h"

#include <zo/value.h>

/// The values of a recording at one moment, and which of them a robot's memory does not have yet.
class ReplayedValues
{
public:
    void apply(const ReplayStep& step);
    /// Nothing is known.
    void clear();
    /// The memory may have lost what it had.
    void startOver();

    /// The pairs for ZoMemoryProxy::setListData of what the memory has not; it has them then.
    ZoValue takeChanged(const std::vector<std::string>& keys);

private:
    struct Entry
    {
        std::string wanted;
        std::string written;
        bool isWritten = false;
        bool isTouched = false;
    };

    void set(std::size_t key, const std::string& text);
    void touch(std::size_t key);

    std::vector<Entry> fEntries;       ///< by key
    std::vector<std::size_t> fTouched; ///< each once: what may differ from what is written
};
