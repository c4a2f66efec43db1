// SPDX-License-Identifier: MIT
#pragma once

#include <zo/export.h>
#include <zo/value.h>

#include <string>
#include <string_view>

/// Values as texts that can leave the robot's memory: for files and other programs.
class ZO_EXPORT ZoJson
{
public:
    /// JSON of `value`, as the robot's memory has it: `3`, `3.0`, `"3"`, `[1,"a"]`, `null` for an
    /// invalid value; NaN, Infinity and -Infinity are floats. Always UTF-8: a byte of a string that
    /// is none is written as the escape \udc80 to \udcff, from which Python's "surrogateescape"
    /// makes that byte again. Throws ZoError for an array that has no JSON, as one with a NaN; no
    /// robot's memory holds any.
    static std::string textOf(const ZoValue& value);

    /// The value that `text` spells, by the rules of the robot's memory: what is no JSON is a
    /// string as it stands. Turns every text of textOf back into an equal value.
    static ZoValue valueOf(std::string_view text);
};
