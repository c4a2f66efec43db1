// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include <utility>

namespace kit {

/// An open file descriptor, closed with this object; -1: none.
class Descriptor
{
public:
    explicit Descriptor(int descriptor = -1) : fDescriptor(descriptor) {}
    ~Descriptor()
    {
        if (fDescriptor >= 0)
            ::close(fDescriptor);
    }
    Descriptor(Descriptor&& other) noexcept : fDescriptor(std::exchange(other.fDescriptor, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(fDescriptor, other.fDescriptor);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return fDescriptor; }
    bool isOpen() const { return fDescriptor >= 0; }

private:
    int fDescriptor;
};

} // namespace kit
