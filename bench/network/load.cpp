// SPDX-License-Identifier: MIT
#include "network/load.h"

#include <algorithm>
#include <cstdio>

int Load::written() const
{
    return changing == Changing::All ? keys : std::max(keys / 100, 1);
}

int Load::cycle() const
{
    return changing == Changing::Other ? keys / written() : 1;
}

std::string Load::text() const
{
    const std::string start = std::to_string(keys) + " keys, ";
    if (changing == Changing::All)
        return start + "all written at every tick";
    const bool isSame = changing == Changing::Same;
    return start + (isSame ? "the same " : "another ") + std::to_string(written()) +
           " written at every tick";
}

std::string Load::alias(int key)
{
    char text[32];
    std::snprintf(text, sizeof text, "Joint%05d/Position", key);
    return text;
}

std::vector<std::string> Load::keyNames(int first, int keys)
{
    std::vector<std::string> names(keys);
    for (int i = 0; i < keys; ++i)
        names[i] = key(first + i);
    return names;
}
