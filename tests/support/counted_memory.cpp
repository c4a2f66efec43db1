// SPDX-License-Identifier: MIT
#include "support/counted_memory.h"

#include <cstdlib>
#include <malloc.h>
#include <new>
#include <string_view>

namespace {

thread_local Allocations soFar;
thread_local int piecesLeft = -1; ///< negative: as many as it wants

void* allocated(std::size_t size) noexcept
{
    ++soFar.pieces;
    soFar.bytes += size;
    if (piecesLeft == 0)
        return nullptr;
    if (piecesLeft > 0)
        --piecesLeft;
    return std::malloc(size == 0 ? 1 : size);
}

thread_local std::string_view watched;
thread_local int found = 0;

void giveBack(void* memory) noexcept
{
    const std::string_view bytes(static_cast<const char*>(memory), ::malloc_usable_size(memory));
    if (!watched.empty() && bytes.find(watched) != std::string_view::npos)
        ++found;
    std::free(memory);
}

} // namespace

Allocations allocationsSoFar()
{
    return soFar;
}

WatchFor::WatchFor(std::string_view text)
{
    watched = text;
    ::found = 0;
}

WatchFor::~WatchFor()
{
    watched = {};
}

int WatchFor::found() const
{
    return ::found;
}

MemoryShortage::MemoryShortage(int pieces)
{
    piecesLeft = pieces;
}

MemoryShortage::~MemoryShortage()
{
    piecesLeft = -1;
}

void* operator new(std::size_t size)
{
    if (void* const memory = allocated(size))
        return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocated(size);
}

void operator delete(void* memory) noexcept
{
    giveBack(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    giveBack(memory);
}
