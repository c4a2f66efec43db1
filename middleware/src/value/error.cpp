// SPDX-License-Identifier: MIT
#include <zo/error.h>

ZoError::ZoError(const std::string& text) : fText(text) {}

ZoError::~ZoError() = default;

ZoUnderWay::~ZoUnderWay() = default;
