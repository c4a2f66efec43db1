// SPDX-License-Identifier: MIT
#include "support/reference_json.h"

#include <algorithm>
#include <string>

namespace {

/// Walks the grammar; each operation takes what it is named for off the front of `rest`.
class Grammar
{
public:
    explicit Grammar(std::string_view text) : fRest(text) {}

    bool takeAll() { return takeValue(0) && fRest.empty(); }
    int nesting() const { return fNesting; }

private:
    bool take(std::string_view start)
    {
        const bool found = fRest.substr(0, start.size()) == start;
        if (found)
            fRest.remove_prefix(start.size());
        return found;
    }

    void takeSpace()
    {
        fRest.remove_prefix(std::min(fRest.find_first_not_of(" \t\n\r"), fRest.size()));
    }

    bool takeValue(int depth)
    {
        takeSpace();
        const bool taken = takeBareValue(depth);
        takeSpace();
        return taken;
    }

    bool takeBareValue(int depth)
    {
        switch (fRest.empty() ? '\0' : fRest.front()) {
        case '"':
            return takeString();
        case '[':
            return takeArray(depth + 1);
        case '{':
            return takeObject(depth + 1);
        default:
            return take("null") || take("true") || take("false") || takeNumber();
        }
    }

    bool takeDigits()
    {
        const std::size_t count = std::min(fRest.find_first_not_of("0123456789"), fRest.size());
        fRest.remove_prefix(count);
        return count > 0;
    }

    bool takeNumber()
    {
        take("-");
        if (!take("0") && !takeDigits())
            return false;
        if (take(".") && !takeDigits())
            return false;
        if (take("e") || take("E")) {
            if (!take("+"))
                take("-");
            return takeDigits();
        }
        return true;
    }

    bool takeString()
    {
        if (!take("\""))
            return false;
        while (!fRest.empty() && fRest.front() != '"')
            if (!takeCharacter())
                return false;
        return take("\"");
    }

    bool takeCharacter()
    {
        if (take("\\u")) {
            const unsigned code = takeHex();
            if (code >= 0xD800U && code < 0xDC00U) {
                const unsigned low = take("\\u") ? takeHex() : 0;
                return low >= 0xDC00U && low < 0xE000U;
            }
            return code < 0xDC00U || (code >= 0xE000U && code <= 0xFFFFU);
        }
        if (take("\\"))
            return takeOneOf("\"\\/bfnrt");
        const bool plain = static_cast<unsigned char>(fRest.front()) >= 0x20U;
        fRest.remove_prefix(1);
        return plain;
    }

    bool takeOneOf(std::string_view bytes)
    {
        if (fRest.empty() || bytes.find(fRest.front()) == std::string_view::npos)
            return false;
        fRest.remove_prefix(1);
        return true;
    }

    /// Four digits; a number that is no code unit where they are not there.
    unsigned takeHex()
    {
        const std::string digits(fRest.substr(0, 4));
        if (digits.size() < 4 ||
            digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
            return 0x10000U;
        fRest.remove_prefix(4);
        return static_cast<unsigned>(std::stoul(digits, nullptr, 16));
    }

    bool takeArray(int depth)
    {
        if (!take("["))
            return false;
        fNesting = std::max(fNesting, depth);
        takeSpace();
        if (take("]"))
            return true;
        do {
            if (!takeValue(depth))
                return false;
        } while (take(","));
        return take("]");
    }

    bool takeObject(int depth)
    {
        if (!take("{"))
            return false;
        fNesting = std::max(fNesting, depth);
        takeSpace();
        if (take("}"))
            return true;
        do {
            if (!takeField(depth))
                return false;
        } while (take(","));
        return take("}");
    }

    bool takeField(int depth)
    {
        takeSpace();
        if (!takeString())
            return false;
        takeSpace();
        return take(":") && takeValue(depth);
    }

    std::string_view fRest;
    int fNesting = 0;
};

} // namespace

bool isJsonByTheGrammar(std::string_view text, int& nesting)
{
    Grammar grammar(text);
    const bool is = grammar.takeAll();
    nesting = grammar.nesting();
    return is;
}
