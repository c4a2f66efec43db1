// SPDX-License-Identifier: MIT
#include "xml_guard.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <strings.h>

namespace {

bool startsWith(const char* text, const char* prefix)
{
    return std::strncmp(text, prefix, std::strlen(prefix)) == 0;
}

bool startsWithAnyCase(const char* text, const char* prefix)
{
    // The first letter mostly decides, at once.
    if ((*text | ' ') != (*prefix | ' '))
        return false;
    return strncasecmp(text, prefix, std::strlen(prefix)) == 0;
}

// As the parser asks: the locale may take more bytes for space than others do.
bool isSpace(char character)
{
    return std::isspace(static_cast<unsigned char>(character)) != 0;
}

// The parser takes every byte from 127 on for a letter.
bool isNameStart(char character)
{
    const auto byte = static_cast<unsigned char>(character);
    return byte >= 127 || std::isalpha(byte) || byte == '_';
}

bool isNamePart(char character)
{
    return isNameStart(character) || std::isdigit(static_cast<unsigned char>(character)) ||
           (character != '\0' && std::strchr("-.:", character));
}

// How far the parser steps for a character that begins with this byte, valid or not.
std::size_t utf8Step(char first)
{
    const auto byte = static_cast<unsigned char>(first);
    if (byte < 0xC2 || byte > 0xF4)
        return 1;
    return byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

// What a node, an attribute and so on take, in bytes of plain text: measured, and rounded up.
const std::size_t effortOfNode = 32;
const std::size_t effortOfAttribute = 16;
const std::size_t effortOfComparison = 1;
const std::size_t effortOfAncestor = 2;
const std::size_t effortOfReference = 2;
const std::size_t bytesOfComparison = 64;

/// Walks through a text with the parser's own idea of where markup begins and ends. Where the
/// parser would give up, the walk may go on: that can only make the figures larger.
class Scanner
{
public:
    explicit Scanner(const std::string& text)
        : fText(text), fAt(text.c_str()), fEnd(fAt + text.size())
    {
    }

    XmlShape run();

private:
    enum class Encoding
    {
        UNKNOWN,
        UTF8,
        BYTES
    };

    void xMarkup();
    void xText();
    void xCountNode();
    void xCountAttributes(std::size_t attributes, std::size_t bytes);
    void xStartTag();
    void xEndTag();
    void xDeclaration();
    bool xDeclaredAttribute(std::string* value);
    void xAdoptEncoding(const std::string& name);
    void xSkipSpace();
    void xSkipName();
    void xSkipUpTo(char stop);
    void xSkipReference();
    void xSkipPast(std::size_t prefix, const char* end);
    bool xSkipQuoted();
    bool xSkipByteOrderMark();
    bool xEndsInsideCharacter() const;

    const std::string& fText;
    const char* fAt;
    const char* const fEnd;
    Encoding fEncoding = Encoding::UNKNOWN;
    std::size_t fDepth = 0;
    XmlShape fShape;
};

XmlShape Scanner::run()
{
    if (startsWith(fAt, "\xEF\xBB\xBF"))
        fEncoding = Encoding::UTF8;
    for (xSkipSpace(); fAt < fEnd; xSkipSpace()) {
        if (*fAt == '<')
            xMarkup();
        else if (fDepth > 0)
            xText();
        else
            break; // text outside the root element ends the parser's work
    }
    fShape.bytes = fText.size();
    fShape.isUtf8 = fEncoding == Encoding::UTF8;
    fShape.cutCharacter = xEndsInsideCharacter();
    return fShape;
}

void Scanner::xMarkup()
{
    if (fDepth > 0 && fAt[1] == '/') {
        xEndTag();
        return;
    }
    xCountNode();
    if (startsWithAnyCase(fAt, "<?xml"))
        xDeclaration();
    else if (startsWith(fAt, "<!--"))
        xSkipPast(4, "-->");
    else if (startsWith(fAt, "<![CDATA["))
        xSkipPast(9, "]]>");
    else if (isNameStart(fAt[1]))
        xStartTag();
    else
        xSkipPast(1, ">");
}

void Scanner::xText()
{
    xCountNode();
    xSkipUpTo('<');
}

// The parser climbs to the document for each node.
void Scanner::xCountNode()
{
    ++fShape.nodes;
    fShape.ancestors += fDepth;
}

// The parser compares each attribute with those before it. Long names count as several.
void Scanner::xCountAttributes(std::size_t attributes, std::size_t bytes)
{
    fShape.attributes += attributes;
    fShape.comparisons += attributes * (attributes + bytes / bytesOfComparison);
}

// Names and unquoted values hold neither quotes nor '>', and '/' only just before the '>'.
void Scanner::xStartTag()
{
    const char* const begin = fAt;
    std::size_t attributes = 0;
    for (++fAt; fAt < fEnd && *fAt != '>'; ++fAt) {
        if (*fAt == '=')
            ++attributes;
        else if ((*fAt == '"' || *fAt == '\'') && !xSkipQuoted())
            break;
    }
    xCountAttributes(attributes, static_cast<std::size_t>(fAt - begin));
    if (fAt >= fEnd)
        return;
    if (fAt[-1] != '/')
        fShape.nesting = std::max(fShape.nesting, ++fDepth);
    ++fAt;
}

void Scanner::xEndTag()
{
    xSkipPast(2, ">");
    --fDepth;
}

void Scanner::xDeclaration()
{
    std::string encoding;
    fAt += 5;
    while (fAt < fEnd && *fAt != '>') {
        xSkipSpace();
        ++fShape.attributes; // or else a word that is none, which takes as much
        const bool isEncoding = startsWithAnyCase(fAt, "encoding");
        if (isEncoding || startsWithAnyCase(fAt, "version") ||
            startsWithAnyCase(fAt, "standalone")) {
            if (!xDeclaredAttribute(isEncoding ? &encoding : nullptr))
                fAt = fEnd;
        } else {
            while (fAt < fEnd && *fAt != '>' && !isSpace(*fAt))
                ++fAt;
        }
    }
    if (fAt < fEnd)
        ++fAt;
    if (fDepth == 0 && fEncoding == Encoding::UNKNOWN)
        xAdoptEncoding(encoding);
}

bool Scanner::xDeclaredAttribute(std::string* value)
{
    xSkipName();
    xSkipSpace();
    if (*fAt != '=')
        return false;
    ++fAt;
    xSkipSpace();
    const char* begin = fAt;
    if (*fAt == '"' || *fAt == '\'') {
        if (!xSkipQuoted())
            return false;
        if (value)
            value->assign(begin + 1, fAt);
        ++fAt;
        return true;
    }
    while (fAt < fEnd && !isSpace(*fAt) && *fAt != '/' && *fAt != '>')
        ++fAt;
    if (value)
        value->assign(begin, fAt);
    return true;
}

void Scanner::xAdoptEncoding(const std::string& name)
{
    if (name.find('&') != std::string::npos)
        fShape.unclearEncoding = true;
    const bool isUtf8 = name.empty() || startsWithAnyCase(name.c_str(), "UTF-8") ||
                        startsWithAnyCase(name.c_str(), "UTF8");
    fEncoding = isUtf8 ? Encoding::UTF8 : Encoding::BYTES;
}

void Scanner::xSkipSpace()
{
    while (fAt < fEnd && (isSpace(*fAt) || xSkipByteOrderMark()))
        ++fAt;
}

// To the last byte of a mark that the parser takes for space; false when there is none.
bool Scanner::xSkipByteOrderMark()
{
    const bool isMark = fEncoding == Encoding::UTF8 &&
                        (startsWith(fAt, "\xEF\xBB\xBF") || startsWith(fAt, "\xEF\xBF\xBE") ||
                         startsWith(fAt, "\xEF\xBF\xBF"));
    if (isMark)
        fAt += 2;
    return isMark;
}

void Scanner::xSkipName()
{
    while (fAt < fEnd && isNamePart(*fAt))
        ++fAt;
}

void Scanner::xSkipUpTo(char stop)
{
    while (fAt < fEnd && *fAt != stop) {
        if (fAt[0] == '&')
            ++fShape.references;
        if (fAt[0] == '&' && fAt[1] == '#' && fAt[2] != '\0')
            xSkipReference();
        else if (fEncoding == Encoding::UTF8)
            fAt += std::min(utf8Step(*fAt), static_cast<std::size_t>(fEnd - fAt));
        else
            ++fAt;
    }
}

// The parser takes all up to the next ';' for the reference as soon as digits follow the last
// '#' or 'x' before it, whatever else lies between; anything else ends its work.
void Scanner::xSkipReference()
{
    const bool isHex = fAt[2] == 'x';
    const char* const end = std::strchr(fAt + (isHex ? 3 : 2), ';');
    const char* digit = end ? end - 1 : fEnd;
    while (end && std::isxdigit(static_cast<unsigned char>(*digit)))
        --digit;
    fAt = end && *digit == (isHex ? 'x' : '#') ? end + 1 : fEnd;
}

// `end` ends in '>'. Looking for that first is as fast for rows of the other bytes of `end`.
void Scanner::xSkipPast(std::size_t prefix, const char* end)
{
    const std::size_t length = std::strlen(end);
    const auto left = static_cast<std::size_t>(fEnd - fAt);
    for (std::size_t last = prefix + length - 1; last < left; ++last) {
        if (fAt[last] == '>' && std::memcmp(fAt + last + 1 - length, end, length) == 0) {
            fAt += last + 1;
            return;
        }
    }
    fAt = fEnd;
}

// From the opening quote to the closing one; false when there is none.
bool Scanner::xSkipQuoted()
{
    const char quote = *fAt++;
    xSkipUpTo(quote);
    return fAt < fEnd;
}

bool Scanner::xEndsInsideCharacter() const
{
    if (fEncoding != Encoding::UTF8)
        return false;
    const auto last = std::min<std::size_t>(3, fText.size());
    for (std::size_t left = 1; left <= last; ++left) {
        if (utf8Step(fEnd[-static_cast<std::ptrdiff_t>(left)]) > left)
            return true;
    }
    return false;
}

} // namespace

void normalizeXml(std::string& text)
{
    text.resize(std::min(text.find('\0'), text.size()));
    std::size_t to = std::min(text.find('\r'), text.size());
    for (std::size_t from = to; from < text.size(); ++from) {
        if (text[from] != '\r')
            text[to++] = text[from];
        else if (from + 1 == text.size() || text[from + 1] != '\n')
            text[to++] = '\n';
    }
    text.resize(to);
}

XmlShape xmlShape(const std::string& text)
{
    return Scanner(text).run();
}

std::size_t xmlEffort(const XmlShape& shape)
{
    const std::size_t characters = shape.isUtf8 ? shape.bytes / 2 : 0; // which are told apart
    return shape.bytes + characters + shape.nodes * effortOfNode +
           shape.attributes * effortOfAttribute + shape.comparisons * effortOfComparison +
           shape.ancestors * effortOfAncestor + shape.references * effortOfReference;
}

std::string xmlRefusal(const XmlShape& shape)
{
    if (shape.nesting > xmlMaxNesting) {
        return "Error parsing Element: more than " + std::to_string(xmlMaxNesting) +
               " nested elements.";
    }
    if (xmlEffort(shape) > xmlMaxEffort)
        return "Error: parsing the file would take too long.";
    if (shape.cutCharacter)
        return "Error reading Element value: the file ends inside a character.";
    if (shape.unclearEncoding)
        return "Error parsing Declaration: the name of the encoding is not plain text.";
    return std::string();
}
