// SPDX-License-Identifier: MIT
// A shared library like any other.

#include <QtGlobal>

extern "C" Q_DECL_EXPORT int answer()
{
    return 42;
}
