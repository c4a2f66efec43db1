// SPDX-License-Identifier: MIT
#include <kit/shell_line.h>

#include <cctype>
#include <cstdlib>
#include <cstring>

namespace kit {

namespace {

bool isOneOf(char letter, const char* letters)
{
    return letter != 0 && std::strchr(letters, letter) != nullptr;
}

/// The user's folder, as bash puts it in place of ~.
std::string home()
{
    const char* const folder = std::getenv("HOME");
    return folder != nullptr ? folder : "~";
}

/// Reads a line letter by letter.
class LineReader
{
public:
    explicit LineReader(const std::string& breaks) : fBreaks(breaks) { fLine.words.emplace_back(); }

    void read(const std::string& text)
    {
        for (const char letter : text)
            take(letter);
    }
    const ShellLine& line() const { return fLine; }

private:
    void take(char letter);
    void takeQuoted(char letter);
    void takePlain(char letter);
    void add(char letter)
    {
        fLine.words.back() += letter;
        fIsWord = true;
    }
    void keep() { fLine.kept = fLine.words.back().size(); }
    void endWord();

    const std::string& fBreaks;
    ShellLine fLine;
    std::string fWritten;    ///< the last word as it stands in the line
    bool fIsEscaped = false; ///< by the backslash before
    bool fIsWord = false;    ///< the last word has begun; it may still be empty
    std::size_t fBeforeQuote = 0;
};

void LineReader::take(char letter)
{
    fWritten += letter;
    if (fLine.quote != 0 || fIsEscaped)
        takeQuoted(letter);
    else
        takePlain(letter);
}

void LineReader::takeQuoted(char letter)
{
    if (fIsEscaped) {
        // Between double quotes a backslash means itself but before these.
        if (fLine.quote == '"' && !isOneOf(letter, "\"\\$`"))
            add('\\');
        add(letter);
        fIsEscaped = false;
    } else if (letter == fLine.quote) {
        fLine.quote = 0;
        fLine.kept = fBeforeQuote; // a quote that is closed is replaced with the rest
    } else if (letter == '\\' && fLine.quote == '"') {
        fIsEscaped = true;
    } else {
        add(letter);
    }
}

void LineReader::takePlain(char letter)
{
    if (letter == '\\') {
        fIsEscaped = true;
    } else if (isOneOf(letter, "'\"")) {
        fLine.quote = letter;
        fIsWord = true;
        fBeforeQuote = fLine.kept;
        keep();
    } else if (isOneOf(letter, " \t\n;|&<>()")) {
        endWord();
    } else {
        add(letter);
        if (fBreaks.find(letter) != std::string::npos)
            keep();
    }
}

void LineReader::endWord()
{
    if (fWritten.compare(0, 2, "~/") == 0)
        fLine.words.back().replace(0, 1, home());
    if (fIsWord)
        fLine.words.emplace_back();
    fIsWord = false;
    fWritten.clear();
    fLine.kept = 0;
}

/// In the quotes that are open, which bash closes itself.
std::string quoted(char letter, char quote)
{
    const std::string text(1, letter);
    if (quote == '\'')
        return letter == '\'' ? "'\\''" : text;
    if (quote == '"' && letter == '!') // a word of the history's, even behind a backslash
        return "\"\\!\"";
    const bool isPlain = quote == '"' ? !isOneOf(letter, "\"\\$`")
                                      : static_cast<unsigned char>(letter) >= 0x80 ||
                                            std::isalnum(static_cast<unsigned char>(letter)) != 0 ||
                                            isOneOf(letter, "_@%+,./:=-");
    return isPlain ? text : '\\' + text;
}

} // namespace

ShellLine shellLineFrom(const std::string& text, const std::string& breaks)
{
    LineReader reader(breaks);
    reader.read(text);
    return reader.line();
}

std::string quotedBehind(const ShellLine& line, const std::string& word)
{
    std::string text;
    for (const char letter : word.substr(line.kept))
        text += quoted(letter, line.quote);
    return text;
}

} // namespace kit
