// SPDX-License-Identifier: MIT
#include <zo/proxy.h>

ZoProxy::~ZoProxy() = default;
