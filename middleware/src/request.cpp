#include "request.h"

#include <hiredis/hiredis.h>

#include <memory>
#include <new>

void appendCommand(const std::vector<std::string_view>& words, std::string& bytes)
{
    std::vector<const char*> texts;
    std::vector<std::size_t> sizes;
    texts.reserve(words.size());
    sizes.reserve(words.size());
    for (const std::string_view word : words) {
        texts.push_back(word.empty() ? "" : word.data());
        sizes.push_back(word.size());
    }
    char* command = nullptr;
    const int size = redisFormatCommandArgv(&command, static_cast<int>(words.size()), texts.data(),
                                            sizes.data());
    if (size < 0)
        throw std::bad_alloc();
    const std::unique_ptr<char, decltype(&redisFreeCommand)> owner(command, &redisFreeCommand);
    bytes.append(command, static_cast<std::size_t>(size));
}

std::string encodeCommand(const std::vector<std::string_view>& words)
{
    std::string bytes;
    appendCommand(words, bytes);
    return bytes;
}
