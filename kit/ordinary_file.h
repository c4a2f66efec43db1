// SPDX-License-Identifier: MIT
#pragma once

#include <sys/stat.h>

namespace kit {

/// Whether `descriptor` is a file, and no folder, pipe or device.
inline bool isOrdinaryFile(int descriptor)
{
    struct stat status
    {
    };
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace kit
