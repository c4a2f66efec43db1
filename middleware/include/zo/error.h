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

/// The answer is still on its way from the robot: a later call finds it. Only where lists are
/// followed.
class ZO_EXPORT ZoUnderWay : public ZoError
{
public:
    using ZoError::ZoError;
    ZoUnderWay(const ZoUnderWay&) = default;
    ZoUnderWay& operator=(const ZoUnderWay&) = default;
    ~ZoUnderWay() override;
};
