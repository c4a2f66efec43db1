// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <memory>

class QString;

struct FileStreamCloser
{
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

/// An open stream of the C library, which the XML parser reads and writes; closed with its owner.
using FileStream = std::unique_ptr<std::FILE, FileStreamCloser>;

/// Opens a file by its path in UTF-8, whatever the locale; empty when that fails. Neither call
/// waits, whatever the path names, nor does reading. Writing waits for whoever reads a pipe.
/// Other programs that this one starts do not inherit the file.
FileStream openForReading(const QString& path);
FileStream openForWriting(const QString& path);
