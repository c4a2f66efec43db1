// SPDX-License-Identifier: MIT
#include <kit/temporary_folder.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace kit {

TemporaryFolder::TemporaryFolder(const std::string& name)
    : fPath((std::filesystem::temp_directory_path() / (name + "-XXXXXX")).string())
{
    if (!::mkdtemp(fPath.data()))
        throw std::system_error(errno, std::generic_category(), "cannot make " + fPath);
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(fPath, ignored);
}

} // namespace kit
