#pragma once

#include <cstdio>
#include <memory>

struct FileStreamCloser
{
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};

/// An open stream of the C library, which the XML parser reads and writes; closed with its owner.
using FileStream = std::unique_ptr<std::FILE, FileStreamCloser>;
