// SPDX-License-Identifier: MIT
#include "wire/gatherer.h"

namespace zo {

std::optional<std::string_view> Gatherer::take(std::string_view& bytes, std::size_t size)
{
    forget();
    const std::size_t missing = size - fKept.size();
    if (bytes.size() >= missing)
        return end(bytes, missing);
    keep(bytes);
    return std::nullopt;
}

std::optional<std::string_view> Gatherer::takeLine(std::string_view& bytes)
{
    forget();
    const std::size_t last = bytes.find('\n');
    if (last != std::string_view::npos)
        return end(bytes, last + 1);
    keep(bytes);
    return std::nullopt;
}

void Gatherer::forget()
{
    if (fIsWhole)
        fKept.clear();
    fIsWhole = false;
}

std::optional<std::string_view> Gatherer::end(std::string_view& bytes, std::size_t size)
{
    std::string_view piece = bytes.substr(0, size);
    bytes.remove_prefix(size);
    if (!fKept.empty()) {
        piece = fKept.append(piece);
        fIsWhole = true;
    }
    return piece;
}

void Gatherer::keep(std::string_view& bytes)
{
    fKept.append(bytes);
    bytes = {};
}

} // namespace zo
