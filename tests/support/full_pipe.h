// SPDX-License-Identifier: MIT
#pragma once

#include "support/patience.h"

#include <QByteArray>
#include <QString>

#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <unistd.h>

/// A pipe that is full to the last byte, and whose reader reads only when it is told to.
class FullPipe
{
public:
    FullPipe()
    {
        if (::pipe2(fEnds, O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        // For other programs it blocks: the flag is that of an opening of its own.
        const int writeEnd = ::open(qPrintable(path()), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        while (::write(writeEnd, "x", 1) == 1) {
        }
        ::close(writeEnd);
    }
    ~FullPipe()
    {
        ::close(fEnds[0]);
        ::close(fEnds[1]);
    }
    FullPipe(const FullPipe&) = delete;
    FullPipe& operator=(const FullPipe&) = delete;

    /// What is there, up to `size` bytes; less when no more comes.
    QByteArray read(int size) const
    {
        QByteArray bytes;
        pollfd input{fEnds[0], POLLIN, 0};
        while (bytes.size() < size && ::poll(&input, 1, patience) > 0) {
            QByteArray piece(size - bytes.size(), '\0');
            const auto count = ::read(fEnds[0], piece.data(), std::size_t(piece.size()));
            if (count <= 0)
                break;
            bytes += piece.left(int(count));
        }
        return bytes;
    }
    /// Makes room in it.
    void drain() const
    {
        int size = 0;
        ::ioctl(fEnds[0], FIONREAD, &size);
        read(size);
    }
    int writeEnd() const { return fEnds[1]; }
    /// By which other programs can open the end to write to.
    QString path() const { return QString("/proc/%1/fd/%2").arg(::getpid()).arg(fEnds[1]); }

private:
    int fEnds[2] = {-1, -1};
};
