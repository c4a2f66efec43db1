// SPDX-License-Identifier: MIT
#include "support/reference_replies.h"

#include "support/reply_recorder.h"

#include <wire/limits.h>

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <regex>

using namespace zo;

namespace {

/// Ends the reading, from any depth.
struct Stop
{
    ReplyReading::End end;
};

void require(bool holds)
{
    if (!holds)
        throw Stop{ReplyReading::Refused};
}

/// Long texts exhaust the matcher's stack; no pattern here fits one of this size.
bool isLike(const std::string& text, const std::regex& pattern)
{
    return text.size() < 1000 && std::regex_match(text, pattern);
}

/// `text` with "0" for each run of digits, however long.
std::string withShortDigits(const std::string& text)
{
    std::string shorter;
    for (const char byte : text) {
        const bool isDigit = byte >= '0' && byte <= '9';
        if (!isDigit)
            shorter += byte;
        else if (shorter.empty() || shorter.back() != '0')
            shorter += '0';
    }
    return shorter;
}

class Judge
{
public:
    Judge(std::string_view bytes, int replies) : fRest(bytes), fReplies(replies) {}

    ReplyReading judge()
    {
        ReplyReading::End end = ReplyReading::Unfinished;
        try {
            while (!fRest.empty() && (fReply < fReplies || fRest.front() == '>'))
                readMessage();
        } catch (const Stop& stop) {
            end = stop.end;
            fRest = {};
        }
        if (fReply == fReplies && end == ReplyReading::Unfinished)
            end = ReplyReading::Whole;
        return {end, fLog, fRest.size()};
    }

private:
    void readMessage()
    {
        fIsPush = fRest.front() == '>';
        fElements = 0;
        if (fIsPush)
            fPushBytes = fPushSkipped = 0;
        fMayBePush = fIsPush;
        readPiece({fReply, 0, 0}, false);
        fReply += fIsPush ? 0 : 1;
    }

    std::string take(std::size_t size)
    {
        if (fRest.size() < size)
            throw Stop{ReplyReading::Unfinished};
        std::string taken(fRest.substr(0, size));
        fRest.remove_prefix(size);
        return taken;
    }

    std::string takeLine(std::size_t longest)
    {
        const std::size_t end = fRest.find('\n');
        require((end == std::string_view::npos ? fRest.size() : end + 1) <= longest + 2);
        if (end == std::string_view::npos)
            throw Stop{ReplyReading::Unfinished};
        std::string line = take(end + 1);
        require(line.size() >= 2 && line.find('\r') == line.size() - 2);
        spend(line.size() + 1);
        return line.substr(0, line.size() - 2);
    }

    void spend(std::size_t bytes)
    {
        std::size_t& spent = fIsPush ? fPushBytes : fBytes;
        spent += bytes;
        require(spent <= ReplyLimits::fMaxReply);
    }

    long long takeLength(bool mayBeMissing)
    {
        const std::string line = takeLine(32);
        static const std::regex length("0|[1-9][0-9]{0,18}");
        if (mayBeMissing && line == "-1")
            return -1;
        require(isLike(line, length));
        require(line.size() < 19 || line <= "9223372036854775807");
        return std::stoll(line);
    }

    void tell(const ReplyPlace& place, const ReplyPiece& piece, bool isSilent)
    {
        ReplyRecorder recorder(fLog, fIsPush ? "push " : "");
        if (!isSilent)
            recorder.take(place, piece);
    }

    void readPiece(const ReplyPlace& place, bool isSilent)
    {
        char type = take(1)[0];
        while (type == '|') {
            fMayBePush = false;
            readElements(2 * takeCount(2), place.depth, true);
            type = take(1)[0];
        }
        require(type != '>' || fMayBePush);
        fMayBePush = false;
        if (std::string_view("*%~>").find(type) != std::string_view::npos)
            readAggregate(type, place, isSilent);
        else if (std::string_view("$!=").find(type) != std::string_view::npos)
            readText(type, place, isSilent);
        else
            readLine(type, place, isSilent);
    }

    long long takeCount(int elementsEach)
    {
        const long long count = takeLength(false);
        require(count <= ReplyLimits::fMaxElements);
        fElements += elementsEach * count;
        require(fElements <= ReplyLimits::fMaxElements);
        return count;
    }

    void readElements(long long count, int depth, bool isSilent)
    {
        require(count == 0 || depth < ReplyLimits::fMaxDepth);
        for (int i = 0; i < count; ++i)
            readPiece({fReply, depth + 1, i}, isSilent);
    }

    void readAggregate(char type, const ReplyPlace& place, bool isSilent)
    {
        const long long count = takeLength(type == '*');
        if (count < 0)
            return tell(place, {ReplyKind::Nil}, isSilent);
        const ReplyKind kind = type == '*'   ? ReplyKind::Array
                               : type == '%' ? ReplyKind::Map
                               : type == '~' ? ReplyKind::Set
                                             : ReplyKind::Push;
        tell(place, {kind, {}, count}, isSilent);
        require(count <= ReplyLimits::fMaxElements);
        const long long elements = type == '%' ? 2 * count : count;
        fElements += elements;
        require(fElements <= ReplyLimits::fMaxElements);
        readElements(elements, place.depth, isSilent);
    }

    void readText(char type, const ReplyPlace& place, bool isSilent)
    {
        const long long length = takeLength(type == '$');
        if (length < 0)
            return tell(place, {ReplyKind::Nil}, isSilent);
        const auto size = static_cast<std::size_t>(length);
        require(size <= ReplyLimits::fMaxText);
        const std::size_t all = (fIsPush ? fPushBytes : fBytes) + size + 2;
        const bool isTooLarge = size > ReplyLimits::fMaxValue || all > ReplyLimits::fMaxKept;
        spend(isTooLarge ? 2 : size + 2);
        std::size_t& skipped = fIsPush ? fPushSkipped : fSkipped;
        skipped += isTooLarge ? size : 0;
        require(skipped <= ReplyLimits::fMaxSkipped);
        const std::string text = take(size);
        require(take(2) == "\r\n");
        if (isTooLarge)
            return tell(place, {ReplyKind::TooLarge, {}, length}, isSilent);
        require(type != '=' || (size >= 4 && text[3] == ':'));
        if (type == '=')
            tell(place, {ReplyKind::Verbatim, std::string_view(text).substr(4)}, isSilent);
        else
            tell(place, {type == '$' ? ReplyKind::Text : ReplyKind::Error, text}, isSilent);
    }

    void readLine(char type, const ReplyPlace& place, bool isSilent)
    {
        require(std::string_view("+-:_,(#").find(type) != std::string_view::npos);
        const bool isShort = type == ':' || type == '_' || type == '#';
        const std::string line = takeLine(isShort ? 32 : ReplyLimits::fMaxLine);
        ReplyPiece piece{ReplyKind::Status, line};
        if (type == '-') {
            piece.kind = ReplyKind::Error;
        } else if (type == '_') {
            require(line.empty());
            piece.kind = ReplyKind::Nil;
        } else if (type == '#') {
            require(line == "t" || line == "f");
            piece.kind = ReplyKind::Boolean;
            piece.number = line == "t";
        } else if (type == ':') {
            piece = integer(line);
        } else if (type == ',') {
            piece = real(line);
        } else if (type == '(') {
            require(line.find_first_not_of("0123456789", line.find_first_of("+-") == 0) ==
                        std::string::npos &&
                    line.find_first_of("0123456789") != std::string::npos);
            piece.kind = ReplyKind::BigNumber;
        }
        tell(place, piece, isSilent);
    }

    static ReplyPiece integer(const std::string& line)
    {
        static const std::regex digits("[+-]?[0-9]+");
        require(isLike(line, digits));
        errno = 0;
        const long long number = std::strtoll(line.c_str(), nullptr, 10);
        require(errno == 0);
        return {ReplyKind::Integer, line, number};
    }

    static ReplyPiece real(const std::string& line)
    {
        static const std::regex none("-?inf|-?nan");
        static const std::regex decimal("[+-]?0(\\.0)?([eE][+-]?0)?");
        ReplyPiece piece{ReplyKind::Double, line};
        piece.real = std::strtod(line.c_str(), nullptr);
        if (std::isnan(piece.real))
            piece.real = std::fabs(piece.real); // one is as good as another
        if (!isLike(line, none)) {
            require(isLike(withShortDigits(line), decimal));
            require(std::isfinite(piece.real));
            require(piece.real != 0 || line.find_first_of("123456789") >= line.find_first_of("eE"));
        }
        return piece;
    }

    std::string_view fRest;
    const int fReplies;
    int fReply = 0;
    bool fIsPush = false;
    bool fMayBePush = false;
    long long fElements = 0;
    std::size_t fBytes = 0;
    std::size_t fPushBytes = 0;
    std::size_t fSkipped = 0;
    std::size_t fPushSkipped = 0;
    std::string fLog;
};

} // namespace

ReplyReading readByTheLetter(std::string_view bytes, int replies)
{
    return Judge(bytes, replies).judge();
}
