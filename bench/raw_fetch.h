// SPDX-License-Identifier: MIT
#pragma once

#include <hiredis/hiredis.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// The peer's connection to a server on this machine, and the requests that read a list in chunks
/// as large as ours.
class RawFetch
{
public:
    RawFetch(int port, std::vector<std::string> names)
        : fContext(redisConnect("127.0.0.1", port), &redisFree), fNames(std::move(names))
    {
    }

    /// The bytes of all requests.
    void format()
    {
        fRequests.clear();
        for (std::size_t begin = 0; begin < fNames.size(); begin += fChunk)
            fRequests.push_back(formatted(begin, std::min(fNames.size(), begin + fChunk)));
    }

    /// All requests at once, and then the replies; whether all came.
    bool fetch()
    {
        for (const std::string& request : fRequests)
            redisAppendFormattedCommand(fContext.get(), request.data(), request.size());
        bool isWhole = true;
        for (std::size_t i = 0; i < fRequests.size(); ++i) {
            void* reply = nullptr;
            isWhole = redisGetReply(fContext.get(), &reply) == REDIS_OK && isWhole &&
                      static_cast<redisReply*>(reply)->type == REDIS_REPLY_ARRAY;
            freeReplyObject(reply);
        }
        return isWhole;
    }

private:
    static constexpr std::size_t fChunk = 1000;

    std::string formatted(std::size_t begin, std::size_t end) const
    {
        std::vector<const char*> texts{"MGET"};
        std::vector<std::size_t> sizes{4};
        for (std::size_t i = begin; i < end; ++i) {
            texts.push_back(fNames[i].data());
            sizes.push_back(fNames[i].size());
        }
        char* bytes = nullptr;
        const auto size = redisFormatCommandArgv(&bytes, static_cast<int>(texts.size()),
                                                 texts.data(), sizes.data());
        if (size < 0)
            throw std::runtime_error("the request for the peer cannot be made");
        std::string request(bytes, static_cast<std::size_t>(size));
        redisFreeCommand(bytes);
        return request;
    }

    std::unique_ptr<redisContext, decltype(&redisFree)> fContext;
    std::vector<std::string> fNames;
    std::vector<std::string> fRequests;
};
