// SPDX-License-Identifier: MIT
#include "support/counted_memory.h"

#include <cstdlib>
#include <new>

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

} // namespace

Allocations allocationsSoFar()
{
    return soFar;
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
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
