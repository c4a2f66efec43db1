// SPDX-License-Identifier: MIT
#include "xml_file.h"

#include "file_stream.h"
#include "saved_form.h"
#include "xml_guard.h"

#include <algorithm>
#include <sys/stat.h>
#include <tinyxml.h>
#include <utility>

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

std::string tooLarge()
{
    return "Error: the file is larger than " + std::to_string(xmlMaxBytes >> 20) + " MiB.";
}

// The size is no more than a hint: the file may be growing, or made by the system as it is read.
void readUpTo(std::size_t limit, std::FILE* stream, std::size_t expected, std::string& text)
{
    static const std::size_t chunk = std::size_t(1) << 20;
    text.reserve(std::min(expected, limit) + chunk + 1);
    std::size_t got = chunk;
    while (got == chunk && text.size() <= limit) {
        const std::size_t had = text.size();
        text.resize(had + chunk);
        got = std::fread(&text[had], 1, chunk, stream);
        text.resize(had + got);
    }
}

// Beyond the limit only as long as the text may be one that the panel saved. The steps grow with
// it, so that even a single value as long as the file is looked through a few times only.
std::string readAll(std::FILE* stream, std::size_t expected, std::string& text)
{
    SavedForm form;
    std::size_t limit = xmlMaxBytes;
    readUpTo(limit, stream, expected, text);
    while (text.size() > limit && form.goesOn(text)) {
        limit += limit / 2;
        readUpTo(limit, stream, expected, text);
    }
    if (std::ferror(stream))
        return unreadable;
    return text.size() > limit ? tooLarge() : std::string();
}

std::string refusal(const std::string& text)
{
    if (isSavedForm(text))
        return std::string();
    return text.size() > xmlMaxBytes ? tooLarge() : xmlRefusal(xmlShape(text));
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
    error = refusal(text);
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
