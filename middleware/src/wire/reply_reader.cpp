// SPDX-License-Identifier: MIT
#include "wire/reply_reader.h"

#include "wire/reply_numbers.h"

#include <algorithm>
#include <utility>

namespace zo {

namespace {

constexpr std::string_view types = "+-:$*_#,(!=%~|>";
constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view lineTypes = "+-(,";
constexpr std::string_view textTypes = "$!=";
constexpr std::size_t longestLength = 32;     // more than any number of 64 bits has digits
constexpr std::size_t longestWholeHeader = 7; // of a text that surely is within the limit
constexpr std::string_view nilText = "$-1\r\n";
constexpr std::size_t formatSize = 4; // "txt:" at the beginning of a verbatim text

bool isOneOf(char type, std::string_view some)
{
    return some.find(type) != std::string_view::npos;
}

std::size_t longestLine(char type)
{
    return isOneOf(type, lineTypes) ? ReplyLimits::fMaxLine : longestLength;
}

ReplyKind kindOfElements(char type)
{
    switch (type) {
    case '%':
        return ReplyKind::Map;
    case '~':
        return ReplyKind::Set;
    case '>':
        return ReplyKind::Push;
    default:
        return ReplyKind::Array;
    }
}

bool isLineEnd(std::string_view bytes, std::size_t at)
{
    return bytes[at] == '\r' && bytes[at + 1] == '\n';
}

/// A text or nil at the beginning of `bytes`; of size 0: not all of it, or something else.
struct WholeElement
{
    ReplyPiece piece;
    std::size_t size;
};

WholeElement wholeElement(std::string_view bytes)
{
    if (bytes.substr(0, nilText.size()) == nilText)
        return {{ReplyKind::Nil}, nilText.size()};
    std::size_t at = 1;
    std::size_t size = 0;
    for (; at < bytes.size() && at < longestWholeHeader && isDigit(bytes[at]); ++at)
        size = 10 * size + static_cast<std::size_t>(bytes[at] - '0');
    const std::size_t begin = at + lineEnd.size();
    const std::size_t end = begin + size;
    const bool isWhole = at > 1 && bytes[1] != '0' && bytes.size() >= end + lineEnd.size() &&
                         isLineEnd(bytes, at) && isLineEnd(bytes, end);
    if (!isWhole)
        return {{ReplyKind::Text}, 0};
    return {{ReplyKind::Text, bytes.substr(begin, size)}, end + lineEnd.size()};
}

} // namespace

void ReplyReader::expect(int replies, ReplySink& sink, const ReplyProgress& before)
{
    fSink = &sink;
    fMissing = replies;
    fAnswer = before;
    fBefore = before.replies;
}

std::string_view ReplyReader::read(std::string_view bytes)
{
    while (!bytes.empty() && !hasProblem() && mayBegin(bytes.front())) {
        if (!readWholeElement(bytes))
            readOn(bytes);
    }
    return bytes;
}

bool ReplyReader::mayBegin(char type) const
{
    return fMessage != Message::None || fMissing > 0 || type == '>';
}

void ReplyReader::readOn(std::string_view& bytes)
{
    switch (fAwaited) {
    case Awaited::Type:
        return readType(bytes);
    case Awaited::Line:
        return readLine(bytes);
    case Awaited::Text:
        return readText(bytes);
    case Awaited::SkippedText:
        return skipText(bytes);
    }
}

/// By far the most pieces are texts among others, or nil instead of one, of which every byte has
/// arrived. They are taken here without a detour; whatever is odd is left to the other operations.
bool ReplyReader::readWholeElement(std::string_view& bytes)
{
    if (bytes.front() != '$' || fAwaited != Awaited::Type || fDepth == 0)
        return false;
    const WholeElement element = wholeElement(bytes);
    if (element.size == 0 || !isKept(element.size))
        return false;
    spend(element.size);
    if (!hasProblem())
        handWhole(element.piece);
    bytes.remove_prefix(element.size);
    return true;
}

void ReplyReader::readType(std::string_view& bytes)
{
    fType = bytes.front();
    bytes.remove_prefix(1);
    if (!isOneOf(fType, types))
        return refuseLine("an unknown type", bytes.substr(0, bytes.find('\n')));
    if (fType == '>' && fMessage != Message::None)
        return refuse("malformed reply: a push inside of a reply");
    if (fMessage == Message::None) {
        fMessage = fType == '>' ? Message::Push : Message::Reply;
        fElements = 0;
        fPush = {};
    }
    fAwaited = Awaited::Line;
}

void ReplyReader::readLine(std::string_view& bytes)
{
    const auto taken = fGatherer.takeLine(bytes);
    std::string_view line = taken ? *taken : fGatherer.kept();
    if (line.size() > longestLine(fType) + lineEnd.size())
        return refuseLine("a line too long", line);
    if (!taken)
        return;
    if (line.size() < lineEnd.size() || line.find('\r') != line.size() - lineEnd.size())
        return refuseLine("a line with a wrong end", line);
    spend(1 + line.size());
    fAwaited = Awaited::Type;
    line.remove_suffix(lineEnd.size());
    if (!hasProblem())
        takeLine(line);
}

void ReplyReader::takeLine(std::string_view line)
{
    switch (fType) {
    case '+':
        return handWhole({ReplyKind::Status, line});
    case '-':
        return handWhole({ReplyKind::Error, line});
    case '_':
        return line.empty() ? handWhole({ReplyKind::Nil}) : refuseLine("no null", line);
    case '#':
        return takeBoolean(line);
    case ':':
    case ',':
    case '(':
        return takeNumber(line);
    default:
        return takeLength(line);
    }
}

void ReplyReader::takeBoolean(std::string_view line)
{
    if (line != "t" && line != "f")
        return refuseLine("no boolean", line);
    handWhole({ReplyKind::Boolean, line, line == "t" ? 1 : 0});
}

void ReplyReader::takeNumber(std::string_view line)
{
    ReplyPiece piece{ReplyKind::BigNumber, line};
    bool isNumber = false;
    if (fType == ':') {
        piece.kind = ReplyKind::Integer;
        isNumber = readInteger(line, piece.number);
    } else if (fType == ',') {
        piece.kind = ReplyKind::Double;
        isNumber = readDouble(line, piece.real);
    } else {
        isNumber = isBigNumber(line);
    }
    if (!isNumber)
        return refuseLine("no number", line);
    handWhole(piece);
}

void ReplyReader::takeLength(std::string_view line)
{
    std::int64_t length = 0;
    if (!readLength(line, length) || (length < 0 && fType != '$' && fType != '*'))
        return refuseLine("no length", line);
    if (length < 0)
        handWhole({ReplyKind::Nil});
    else if (isOneOf(fType, textTypes))
        beginText(static_cast<std::size_t>(length));
    else
        beginElements(length);
}

void ReplyReader::beginText(std::size_t size)
{
    if (size > ReplyLimits::fMaxText)
        return refuse(nameOfPiece() + " is larger than " + inMebibytes(ReplyLimits::fMaxText));
    const bool isTooLarge = size > ReplyLimits::fMaxValue || !isKept(size + lineEnd.size());
    fSkipped = fToSkip = isTooLarge ? size : 0;
    fSize = size - fSkipped;
    fAwaited = fSkipped > 0 ? Awaited::SkippedText : Awaited::Text;
    spend(fSize + lineEnd.size());
    spendSkipped(fSkipped);
}

void ReplyReader::skipText(std::string_view& bytes)
{
    const std::size_t size = std::min(fToSkip, bytes.size());
    bytes.remove_prefix(size);
    fToSkip -= size;
    if (fToSkip == 0)
        fAwaited = Awaited::Text; // of no bytes: its end is left
}

void ReplyReader::readText(std::string_view& bytes)
{
    const auto taken = fGatherer.take(bytes, fSize + lineEnd.size());
    if (!taken)
        return;
    if (taken->substr(fSize) != lineEnd)
        return refuse("malformed reply: " + nameOfPiece() + " is longer than announced");
    fAwaited = Awaited::Type;
    takeText(taken->substr(0, fSize));
}

void ReplyReader::takeText(std::string_view text)
{
    if (fSkipped > 0)
        return handWhole({ReplyKind::TooLarge, {}, static_cast<std::int64_t>(fSkipped)});
    if (fType == '$')
        return handWhole({ReplyKind::Text, text});
    if (fType == '!')
        return handWhole({ReplyKind::Error, text});
    if (text.size() < formatSize || text[formatSize - 1] != ':')
        return refuse("malformed reply: a text without its format", text.substr(0, formatSize));
    handWhole({ReplyKind::Verbatim, text.substr(formatSize)});
}

void ReplyReader::beginElements(std::int64_t count)
{
    // Its sink knows best how many there should be.
    if (fType != '|')
        hand({kindOfElements(fType), {}, count});
    if (hasProblem())
        return;
    const std::int64_t each = fType == '%' || fType == '|' ? 2 : 1;
    if (count <= ReplyLimits::fMaxElements)
        fElements += each * count;
    if (count > ReplyLimits::fMaxElements || fElements > ReplyLimits::fMaxElements)
        return refuse("malformed reply: more than " + std::to_string(ReplyLimits::fMaxElements) +
                      " elements");
    if (count == 0 && fType != '|')
        endPiece();
    else if (count > 0)
        beginLevel(each * count);
}

void ReplyReader::beginLevel(std::int64_t elements)
{
    if (fDepth == ReplyLimits::fMaxDepth)
        return refuse("malformed reply: more than " + std::to_string(ReplyLimits::fMaxDepth) +
                      " arrays inside one another");
    const bool isAttribute = fType == '|';
    fLevels[fDepth] = {elements, 0, isAttribute, isAttribute || isSilent()};
    ++fDepth;
}

void ReplyReader::hand(const ReplyPiece& piece)
{
    ReplySink* const sink = listener();
    if (sink && !sink->take(place(), piece))
        refuse(sink->problem());
}

void ReplyReader::handWhole(const ReplyPiece& piece)
{
    hand(piece);
    if (!hasProblem())
        endPiece();
}

void ReplyReader::endPiece()
{
    while (fDepth > 0) {
        Level& level = fLevels[fDepth - 1];
        ++level.index;
        if (--level.missing > 0)
            return;
        --fDepth;
        if (level.isAttribute)
            return; // what it is about comes next
    }
    endMessage();
}

void ReplyReader::endMessage()
{
    if (std::exchange(fMessage, Message::None) != Message::Reply)
        return;
    ++fAnswer.replies;
    --fMissing;
}

/// Whether the message may have another text of so many bytes.
bool ReplyReader::isKept(std::size_t size) const
{
    return progressOfMessage().taken + size <= ReplyLimits::fMaxKept;
}

void ReplyReader::spend(std::size_t bytes)
{
    progressOfMessage().taken += bytes;
    if (progressOfMessage().taken > ReplyLimits::fMaxReply)
        refuse(nameOfMessage() + " is larger than " + inMebibytes(ReplyLimits::fMaxReply));
}

// Nobody waits for ever for what is thrown away.
void ReplyReader::spendSkipped(std::size_t bytes)
{
    progressOfMessage().skipped += bytes;
    if (progressOfMessage().skipped > ReplyLimits::fMaxSkipped)
        refuse(nameOfMessage() + " has more than " + inMebibytes(ReplyLimits::fMaxSkipped) +
               " of texts too large to be kept");
}

ReplySink* ReplyReader::listener() const
{
    if (isSilent())
        return nullptr;
    return isPush() ? fPushes : fSink;
}

ReplyPlace ReplyReader::place() const
{
    return {fAnswer.replies, fDepth, fDepth > 0 ? fLevels[fDepth - 1].index : 0};
}

std::string ReplyReader::nameOfPiece() const
{
    const ReplySink* const sink = listener();
    return sink ? sink->nameOf(place()) : "a text beside the reply";
}

void ReplyReader::refuse(std::string text, std::string_view sent)
{
    fProblem = {std::move(text), std::string(sent)};
}

/// `line` is what followed the type.
void ReplyReader::refuseLine(const char* what, std::string_view line)
{
    const std::size_t end = std::min(line.find_first_of("\r\n"), line.size());
    refuse(std::string("malformed reply: ") + what,
           fType + std::string(line.substr(0, std::min(end, ReplyLimits::fMaxLine))));
}

} // namespace zo
