// SPDX-License-Identifier: MIT
#include "file_stream.h"

#include <QString>

#include <fcntl.h>
#include <unistd.h>

namespace {

// Opening a pipe without a partner, or a terminal line, must not stop the window.
int openFile(const QString& path, int flags)
{
    const mode_t everybody = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
    return open(path.toUtf8().constData(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, everybody);
}

// A full pipe would otherwise swallow what comes next.
bool letWait(int file)
{
    const int flags = fcntl(file, F_GETFL);
    return flags >= 0 && fcntl(file, F_SETFL, flags & ~O_NONBLOCK) == 0;
}

FileStream streamOf(int file, const char* mode)
{
    FileStream stream(fdopen(file, mode));
    if (!stream)
        close(file);
    return stream;
}

} // namespace

FileStream openForReading(const QString& path)
{
    const int file = openFile(path, O_RDONLY);
    return file < 0 ? FileStream() : streamOf(file, "rb");
}

FileStream openForWriting(const QString& path)
{
    const int file = openFile(path, O_WRONLY | O_CREAT | O_TRUNC);
    if (file < 0)
        return FileStream();
    FileStream stream = streamOf(file, "wb");
    if (stream && !letWait(file))
        stream.reset();
    return stream;
}
