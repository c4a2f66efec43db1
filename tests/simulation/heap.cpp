// SPDX-License-Identifier: MIT
#include "simulation/heap.h"

#include <cstddef>
#include <cstdlib>
#include <new>
#include <utility>

namespace {

// Each process of the simulation has one thread.
bool isForLink = false;
bool hasFailed = false;
int untilFailure = -1;
std::int64_t bytes = 0; // of the link

} // namespace

void Heap::setLink(bool isLink)
{
    isForLink = isLink;
}

void Heap::failIn(int number)
{
    untilFailure = number;
}

bool Heap::takeFailure()
{
    return std::exchange(hasFailed, false);
}

std::int64_t Heap::inUseByLink()
{
    return bytes;
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace {

/// Stands before each block.
struct alignas(std::max_align_t) Label
{
    std::int64_t size;
    bool isLinks;
};

bool mustFail()
{
    if (!isForLink || untilFailure < 0)
        return false;
    hasFailed = --untilFailure < 0;
    return hasFailed;
}

} // namespace

void* operator new(std::size_t size)
{
    if (mustFail())
        throw std::bad_alloc();
    auto* const label = static_cast<Label*>(std::malloc(sizeof(Label) + size));
    if (!label)
        throw std::bad_alloc();
    *label = {static_cast<std::int64_t>(size), isForLink};
    bytes += isForLink ? label->size : 0;
    return label + 1;
}

void operator delete(void* block) noexcept
{
    if (!block)
        return;
    Label* const label = static_cast<Label*>(block) - 1;
    bytes -= label->isLinks ? label->size : 0;
    std::free(label);
}

void operator delete(void* block, std::size_t) noexcept
{
    operator delete(block);
}

#endif
