// SPDX-License-Identifier: MIT
// Gives a fuzzer's function every file of the folders that are named, and each file's beginnings:
// what fuzzing once found stays found, in every build and without a fuzzer.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

std::vector<std::filesystem::path> filesIn(const char* folder)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

Bytes read(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void replay(const std::filesystem::path& path)
{
    // Told first: when the function ends the program, this is the input.
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);
    const Bytes bytes = read(path);
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        // Of its exact size, so that address checks notice a byte too many.
        const Bytes beginning(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
        LLVMFuzzerTestOneInput(beginning.data(), beginning.size());
    }
}

} // namespace

int main(int argc, char** argv)
{
    int files = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& path : filesIn(argv[i])) {
            replay(path);
            ++files;
        }
    }
    std::printf("%d files\n", files);
    return files > 0 ? 0 : 1;
}
