// SPDX-License-Identifier: MIT
#include "guarded_array.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace {

struct Block
{
    void* array = nullptr;
    void* pages = nullptr;
    std::size_t size = 0;
};

bool guarding = false;
std::array<Block, 16> blocks;

Block* findBlock(const void* array)
{
    for (Block& block : blocks) {
        if (block.array == array)
            return &block;
    }
    return nullptr;
}

void* allocateGuarded(std::size_t size)
{
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t room = (size + page - 1) / page * page;
    Block* block = findBlock(nullptr);
    if (!block)
        std::abort();
    void* pages =
        mmap(nullptr, room + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED)
        throw std::bad_alloc();
    auto* guardPage = static_cast<char*>(pages) + room;
    mprotect(guardPage, page, PROT_NONE);
    *block = {guardPage - size, pages, room + page};
    return block->array;
}

void release(void* array) noexcept
{
    Block* block = array ? findBlock(array) : nullptr;
    if (!block) {
        std::free(array);
        return;
    }
    munmap(block->pages, block->size);
    *block = Block();
}

} // namespace

GuardedArrays::GuardedArrays()
{
    guarding = true;
}

GuardedArrays::~GuardedArrays()
{
    guarding = false;
}

void* operator new[](std::size_t size)
{
    if (guarding)
        return allocateGuarded(size);
    void* array = std::malloc(size);
    if (!array)
        throw std::bad_alloc();
    return array;
}

void operator delete[](void* array) noexcept
{
    release(array);
}

void operator delete[](void* array, std::size_t /*size*/) noexcept
{
    release(array);
}
