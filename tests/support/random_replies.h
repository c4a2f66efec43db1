// SPDX-License-Identifier: MIT
#pragma once

#include <iterator>
#include <random>
#include <string>

/// Makes replies of every kind at random, with pushes between them, and damages some.
class RandomReplies
{
public:
    explicit RandomReplies(unsigned seed) : fGenerator(seed) {}

    std::size_t below(std::size_t bound)
    {
        return std::uniform_int_distribution<std::size_t>(0, bound - 1)(fGenerator);
    }

    /// The bytes of `count` replies, more or less.
    std::string replies(int count)
    {
        std::string bytes;
        for (int i = 0; i < count; ++i) {
            while (below(4) == 0)
                bytes += ">" + elements(1 + below(3), 1, 0);
            bytes += piece(0);
        }
        while (below(3) == 0)
            bytes += below(3) == 0 ? piece(0) : ">" + elements(1 + below(3), 1, 0);
        if (below(2) == 0)
            damage(bytes);
        return bytes;
    }

private:
    std::string piece(int depth)
    {
        if (below(12) == 0)
            return "|" + elements(below(3), 2, depth) + piece(depth);
        if (depth > 8 || below(3) > 0)
            return leaf();
        switch (below(3)) {
        case 0:
            return "*" + elements(below(5), 1, depth);
        case 1:
            return "~" + elements(below(4), 1, depth);
        default:
            return "%" + elements(below(3), 2, depth);
        }
    }

    std::string elements(std::size_t count, std::size_t each, int depth)
    {
        std::string bytes = std::to_string(count) + "\r\n";
        for (std::size_t i = 0; i < count * each; ++i)
            bytes += piece(depth + 1);
        return bytes;
    }

    std::string leaf()
    {
        static const char* const lines[] = {
            "+OK",      "-ERR no", ":0",  ":-12", ":9223372036854775807",
            "_",        "#t",      "#f",  ",1.5", ",-inf",
            ",nan",     ",1e-320", "$-1", "*-1",  "(1234567",
            "(-999999", "+",       "*0",  "%0",   "~0",
            ",+3"};
        const std::size_t kind = below(30);
        if (kind < std::size(lines))
            return std::string(lines[kind]) + "\r\n";
        if (kind < 22)
            return text("!", "ERR no");
        return kind < 24 ? text("=", "txt:" + bytes()) : text("$", bytes());
    }

    static std::string text(const std::string& type, const std::string& content)
    {
        return type + std::to_string(content.size()) + "\r\n" + content + "\r\n";
    }

    std::string bytes()
    {
        std::string some(below(20), '\0');
        for (char& byte : some)
            byte = "\r\n$*:ab1\0\xff"[below(10)];
        return some;
    }

    void damage(std::string& bytes)
    {
        for (std::size_t times = 1 + below(2); times > 0 && !bytes.empty(); --times) {
            const std::size_t at = below(bytes.size());
            switch (below(4)) {
            case 0:
                bytes.resize(at);
                break;
            case 1:
                bytes[at] = "\r\n$*:+-?1290,(#_%~|>=!"[below(23)];
                break;
            case 2:
                bytes.erase(at, 1);
                break;
            default:
                bytes.insert(at, 1, "\r\n$*:+-?1290,(#_%~|>=!"[below(23)]);
            }
        }
    }

    std::mt19937 fGenerator;
};
