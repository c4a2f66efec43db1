// SPDX-License-Identifier: MIT
#pragma once

#include <zo/export.h>

#include <exception>
#include <string>

/// The one exception of the middleware: what failed, where (address, module or key), and why.
/// Its text never holds a password.
///
/// Not a std::runtime_error on purpose: handlers of file errors must not catch a robot's.
class ZO_EXPORT ZoError : public std::exception
{
public:
    explicit ZoError(const std::string& text);
    ZoError(const ZoError&) = default;
    ZoError& operator=(const ZoError&) = default;
    ~ZoError() override;

    const std::string& toString() const noexcept { return fText; }
    const char* what() const noexcept override { return fText.c_str(); }

private:
    std::string fText;
};
