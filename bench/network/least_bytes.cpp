// SPDX-License-Identifier: MIT
#include "network/least_bytes.h"

#include <wire/request.h>

#include <algorithm>
#include <string_view>

namespace {

constexpr int keysOfCommand = 1000;

FetchBytes bytesOfReading(int first, int keys)
{
    const std::vector<std::string> names = Load::keyNames(first, keys);
    std::vector<std::string_view> words{"MGET"};
    words.insert(words.end(), names.begin(), names.end());
    const std::string value = "$" + std::to_string(Load::fValueSize) + "\r\n\r\n";
    const std::string head = "*" + std::to_string(keys) + "\r\n";
    return {static_cast<double>(zo::encodeCommand(words).size()),
            static_cast<double>(head.size() + keys * (value.size() + Load::fValueSize))};
}

FetchBytes bytesOfKeys(int keys)
{
    FetchBytes all;
    for (int first = 0; first < keys; first += keysOfCommand) {
        const FetchBytes some = bytesOfReading(first, std::min(keysOfCommand, keys - first));
        all.up += some.up;
        all.down += some.down;
    }
    return all;
}

double bytesOfNotice()
{
    const std::string name = Load::key(0);
    const std::string frame = ">2\r\n$10\r\ninvalidate\r\n*1\r\n";
    return static_cast<double>(frame.size() + 1 + std::to_string(name.size()).size() + 2 +
                               name.size() + 2);
}

} // namespace

FetchBytes plainBytes(const Load& load)
{
    return bytesOfKeys(load.keys);
}

FetchBytes leastBytes(const Load& load, int ticks)
{
    const int written = std::min(load.keys, load.written() * std::min(load.cycle(), ticks));
    FetchBytes told = bytesOfKeys(written);
    told.down += written * bytesOfNotice();
    const FetchBytes plain = plainBytes(load);
    return told.both() < plain.both() ? told : plain;
}
