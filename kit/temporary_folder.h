// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kit {

/// A new folder that only this user may enter, removed with all that is in it with this object.
class TemporaryFolder
{
public:
    /// Its name begins with `name`. Throws std::system_error.
    explicit TemporaryFolder(const std::string& name);
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& path() const { return fPath; }

private:
    std::string fPath;
};

} // namespace kit
