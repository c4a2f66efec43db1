// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

/// Follows a text as long as it has the form in which the panel itself saves its keys: the same
/// elements and attributes in the same order, around any values, with white space where the
/// parser skips it. What has the whole form is certain to be parsed, at linear cost, whatever its
/// size.
class SavedForm
{
public:
    enum class Place
    {
        ROOT,
        ENTRIES,
        END,
    };

    /// Whether nothing in `text` deviates so far; it may end anywhere. Later calls are given the
    /// same text grown at its end, and go on behind the last whole entry.
    bool goesOn(const std::string& text);

    /// Whether the text of the last call was a whole file.
    bool isWhole() const { return fPlace == Place::END; }

private:
    std::size_t fSeen = 0;
    Place fPlace = Place::ROOT;
};

/// Whether `text` is a whole file in that form.
bool isSavedForm(const std::string& text);
