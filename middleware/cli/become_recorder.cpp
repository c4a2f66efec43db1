// SPDX-License-Identifier: MIT
#include "become_recorder.h"

#include <kit/system_text.h>

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

namespace {

/// Empty where the system does not tell which file runs.
std::string pathBeside(const std::string& name)
{
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : (self.parent_path() / name).string();
}

} // namespace

void becomeRecorder(std::vector<std::string> words)
{
    const std::string name = "zo-record";
    words.insert(words.begin(), name);
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    ::execv(pathBeside(name).c_str(), pointers.data());
    if (errno == ENOENT)
        ::execvp(name.c_str(), pointers.data());
    const int error = errno;
    if (error == ENOENT)
        throw std::runtime_error("the program zo-record is missing: it is built and installed with "
                                 "the panel, and stands beside zo, or in a folder of PATH");
    throw std::runtime_error("cannot start zo-record: " + kit::messageOf(error));
}
