// SPDX-License-Identifier: MIT
#pragma once

#include <zo/export.h>

#include <string>
#include <utility>
#include <vector>

/// Which library a program runs with, for it to tell.
class ZO_EXPORT ZoVersion
{
public:
    /// A name and a version: "OpenSSL", "3.0.19".
    using Part = std::pair<std::string, std::string>;

    /// This library: "0.1.0".
    static std::string library();
    /// What it is made of: other libraries as they are loaded, those of headers as it was built.
    static std::vector<Part> parts();
};
