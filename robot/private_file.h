// SPDX-License-Identifier: MIT
#pragma once

#include <kit/temporary_folder.h>

#include <string>

/// A file that only this user may read, in a new folder. Both go with this object.
class PrivateFile
{
public:
    /// Holds `text`. Throws std::system_error when it cannot be made.
    PrivateFile(const std::string& name, const std::string& text);

    const std::string& path() const { return fPath; }

private:
    kit::TemporaryFolder fFolder;
    std::string fPath;
};
