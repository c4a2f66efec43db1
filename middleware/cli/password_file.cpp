// SPDX-License-Identifier: MIT
#include "password_file.h"

#include "usage_error.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

namespace {

constexpr std::size_t longestPassword = 4096;

struct CloseFile
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

[[noreturn]] void throwWrong(const std::string& path, const std::string& cause)
{
    throw UsageError("password file '" + path + "': " + cause);
}

std::string causeOf(int error)
{
    return std::generic_category().message(error);
}

} // namespace

std::string readPassword(const std::string& path)
{
    const File file(std::fopen(path.c_str(), "rbe"));
    if (!file)
        throwWrong(path, causeOf(errno));
    std::string line;
    int byte = 0;
    while ((byte = std::fgetc(file.get())) != EOF && byte != '\n') {
        if (line.size() == longestPassword)
            throwWrong(path, "its first line is too long to be a password");
        line += static_cast<char>(byte);
    }
    if (std::ferror(file.get()))
        throwWrong(path, causeOf(errno));
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    if (line.empty())
        throwWrong(path, "its first line is empty");
    return line;
}
