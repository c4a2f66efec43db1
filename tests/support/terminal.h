// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

/// A terminal that shows what is written to it to nobody.
class Terminal
{
public:
    Terminal() : fMaster(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC))
    {
        if (fMaster < 0 || ::grantpt(fMaster) != 0 || ::unlockpt(fMaster) != 0)
            throw std::runtime_error("no terminal");
        fDescriptor = ::open(::ptsname(fMaster), O_RDWR | O_NOCTTY | O_CLOEXEC);
    }
    ~Terminal()
    {
        ::close(fDescriptor);
        ::close(fMaster);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    int descriptor() const { return fDescriptor; }
    /// By which other programs can open it.
    QString path() const { return ::ptsname(fMaster); }

private:
    const int fMaster;
    int fDescriptor = -1;
};
