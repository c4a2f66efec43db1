#include "xml_file.h"

#include "file_stream.h"
#include "xml_guard.h"

#include <algorithm>
#include <sys/stat.h>
#include <tinyxml.h>

namespace {

const char* const unreadable = "Failed to open file: it cannot be read.";

// Only ordinary files end for certain: a device or a pipe may deliver for ever, or never.
std::string kindRefusal(const struct stat& status)
{
    if (S_ISDIR(status.st_mode))
        return "Failed to open file: it is a directory.";
    if (!S_ISREG(status.st_mode))
        return "Failed to open file: it is a device or a pipe.";
    return std::string();
}

// The size is no more than a hint: the file may be growing, or made by the system as it is read.
std::string readAll(std::FILE* stream, std::size_t expected, std::string& text)
{
    static const std::size_t chunk = std::size_t(1) << 20;
    text.reserve(std::min(expected, xmlMaxBytes) + chunk + 1);
    std::size_t got = chunk;
    while (got == chunk && text.size() <= xmlMaxBytes) {
        const std::size_t had = text.size();
        text.resize(had + chunk);
        got = std::fread(&text[had], 1, chunk, stream);
        text.resize(had + got);
    }
    if (std::ferror(stream))
        return unreadable;
    if (text.size() > xmlMaxBytes)
        return "Error: the file is larger than " + std::to_string(xmlMaxBytes >> 20) + " MiB.";
    return std::string();
}

} // namespace

bool loadXml(std::FILE* stream, TiXmlDocument& document, std::string& error)
{
    struct stat status;
    if (fstat(fileno(stream), &status) != 0) {
        error = unreadable;
        return false;
    }
    std::string text;
    error = kindRefusal(status);
    if (error.empty())
        error = readAll(stream, static_cast<std::size_t>(status.st_size), text);
    return error.empty() && parseXml(std::move(text), document, error);
}

bool parseXml(std::string text, TiXmlDocument& document, std::string& error)
{
    normalizeXml(text);
    error = xmlRefusal(xmlShape(text));
    if (!error.empty())
        return false;
    // The parser looks for the end one byte at a time but steps over whole characters: behind
    // the end it must find more of it.
    text.append(4, '\0');
    const FileStream stream(fmemopen(&text[0], text.size(), "rb"));
    if (!stream)
        error = unreadable;
    else if (!document.LoadFile(stream.get(), TIXML_ENCODING_UNKNOWN))
        error = document.ErrorDesc();
    return error.empty();
}
