// SPDX-License-Identifier: MIT
#pragma once

#include <zo/value.h>

#include <string>
#include <vector>

/// The argument of getListData for `keys`.
inline ZoValue requestFor(const std::vector<std::string>& keys)
{
    ZoValue request;
    request.arraySetSize(static_cast<int>(keys.size()));
    for (int i = 0; i < request.getSize(); ++i) {
        request[i].arraySetSize(2);
        request[i][0] = keys[static_cast<std::size_t>(i)];
        request[i][1] = 0;
    }
    return request;
}
