// SPDX-License-Identifier: MIT
#include "saved_form.h"

#include "config_names.h"

#include <cstring>

namespace {

// What every locale takes for space: the parser, which asks the locale, skips at least that.
bool isSpace(char character)
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

bool isHexDigit(char character)
{
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

/// Reads the pieces of the form one after the other. After the first that is not there it only
/// tells whether the text deviates from it or ends within it.
class PieceReader
{
public:
    PieceReader(const char* at, const char* end) : fAt(at), fEnd(end) {}

    /// One entry, or a tag around all of them: `place` is then where that leads to.
    bool piece(SavedForm::Place& place);
    void skipSpace();

    bool isAtEnd() const { return fAt == fEnd; }
    bool deviates() const { return fDeviates; }
    const char* at() const { return fAt; }

private:
    bool xWord(const char* text, std::size_t length);
    template <std::size_t size>
    bool xWord(const char (&text)[size])
    {
        return xWord(text, size - 1);
    }
    template <std::size_t size>
    bool xStart(const char (&name)[size])
    {
        return xWord("<") && xWord(name);
    }
    template <std::size_t size>
    bool xEnd(const char (&name)[size])
    {
        return xWord("</") && xWord(name) && xBracket();
    }
    bool xRoot(SavedForm::Place& place);
    bool xEntry();
    template <std::size_t size>
    bool xAttribute(const char (&name)[size]);
    bool xSpace();
    bool xBracket();
    bool xColor();
    bool xValue();
    bool xPlainText(const char* end);
    bool xReference();
    bool xNumber();
    char xNext(std::size_t steps = 0) const;
    bool xDeviate();

    const char* fAt;
    const char* const fEnd;
    bool fDeviates = false;
};

// Zero at the end, where the pieces are never told apart by one.
char PieceReader::xNext(std::size_t steps) const
{
    return static_cast<std::size_t>(fEnd - fAt) > steps ? fAt[steps] : '\0';
}

bool PieceReader::xDeviate()
{
    fDeviates = true;
    return false;
}

bool PieceReader::xWord(const char* text, std::size_t length)
{
    const auto left = static_cast<std::size_t>(fEnd - fAt);
    if (left < length)
        return std::memcmp(fAt, text, left) == 0 ? false : xDeviate();
    if (std::memcmp(fAt, text, length) != 0)
        return xDeviate();
    fAt += length;
    return true;
}

void PieceReader::skipSpace()
{
    while (fAt < fEnd && isSpace(*fAt))
        ++fAt;
}

bool PieceReader::xSpace()
{
    if (isAtEnd())
        return false;
    if (!isSpace(*fAt))
        return xDeviate();
    skipSpace();
    return true;
}

bool PieceReader::xBracket()
{
    skipSpace();
    return xWord(">");
}

bool PieceReader::piece(SavedForm::Place& place)
{
    if (place == SavedForm::Place::ROOT)
        return xRoot(place);
    if (xNext(1) != '/')
        return xEntry();
    if (!xEnd(ConfigNames::fRoot))
        return false;
    place = SavedForm::Place::END;
    return true;
}

bool PieceReader::xRoot(SavedForm::Place& place)
{
    if (!xStart(ConfigNames::fRoot))
        return false;
    skipSpace();
    const bool isClosed = xNext() == '/';
    if (!(isClosed ? xWord("/>") : xWord(">")))
        return false;
    place = isClosed ? SavedForm::Place::END : SavedForm::Place::ENTRIES;
    return true;
}

bool PieceReader::xEntry()
{
    if (!xStart(ConfigNames::fEntry) || !xSpace())
        return false;
    if (!xAttribute(ConfigNames::fName) || !xAttribute(ConfigNames::fAlias) ||
        !xAttribute(ConfigNames::fWatch) || !xAttribute(ConfigNames::fGraph))
        return false;
    if (!xBracket() || !xColor())
        return false;
    skipSpace();
    return xEnd(ConfigNames::fEntry);
}

bool PieceReader::xColor()
{
    skipSpace();
    if (!xStart(ConfigNames::fColor) || !xSpace())
        return false;
    if (!xAttribute(ConfigNames::fRed) || !xAttribute(ConfigNames::fGreen) ||
        !xAttribute(ConfigNames::fBlue))
        return false;
    skipSpace();
    if (xNext() == '/')
        return xWord("/>");
    if (!xWord(">"))
        return false;
    skipSpace();
    return xEnd(ConfigNames::fColor);
}

template <std::size_t size>
bool PieceReader::xAttribute(const char (&name)[size])
{
    skipSpace();
    if (!xWord(name))
        return false;
    skipSpace();
    if (!xWord("="))
        return false;
    skipSpace();
    return xValue();
}

bool PieceReader::xValue()
{
    if (isAtEnd())
        return false;
    const char quote = *fAt;
    if (quote != '"' && quote != '\'')
        return xDeviate();
    ++fAt;
    const auto left = static_cast<std::size_t>(fEnd - fAt);
    const auto* end = static_cast<const char*>(std::memchr(fAt, quote, left));
    if (!xPlainText(end ? end : fEnd) || !end)
        return false;
    ++fAt;
    return true;
}

bool PieceReader::xPlainText(const char* end)
{
    if (std::memchr(fAt, '\0', static_cast<std::size_t>(end - fAt)))
        return xDeviate();
    while (const void* found = std::memchr(fAt, '&', static_cast<std::size_t>(end - fAt))) {
        fAt = static_cast<const char*>(found);
        if (!xReference())
            return false;
    }
    fAt = end;
    return true;
}

// None holds a quote: a whole one ends within its value.
bool PieceReader::xReference()
{
    switch (xNext(1)) {
    case '#':
        return xNumber();
    case 'l':
        return xWord("&lt;");
    case 'g':
        return xWord("&gt;");
    case 'q':
        return xWord("&quot;");
    default:
        return xNext(2) == 'p' ? xWord("&apos;") : xWord("&amp;");
    }
}

bool PieceReader::xNumber()
{
    if (!xWord("&#x"))
        return false;
    const char* const digits = fAt;
    while (fAt < fEnd && isHexDigit(*fAt))
        ++fAt;
    return fAt > digits || isAtEnd() ? xWord(";") : xDeviate();
}

} // namespace

bool SavedForm::goesOn(const std::string& text)
{
    PieceReader reader(text.data() + fSeen, text.data() + text.size());
    for (bool isThere = true; isThere;) {
        reader.skipSpace();
        fSeen = static_cast<std::size_t>(reader.at() - text.data());
        isThere = fPlace != Place::END && reader.piece(fPlace);
    }
    return fPlace == Place::END ? reader.isAtEnd() : !reader.deviates();
}

bool isSavedForm(const std::string& text)
{
    SavedForm form;
    return form.goesOn(text) && form.isWhole();
}
