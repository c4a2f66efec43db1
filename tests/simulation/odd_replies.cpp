// SPDX-License-Identifier: MIT
#include "simulation/odd_replies.h"

#include <wire/limits.h>

using namespace zo;

const std::string& largeText()
{
    static const std::string text(ReplyLimits::fMaxValue + 1, 'x');
    return text;
}

const std::vector<std::string>& garbageReplies()
{
    static const std::vector<std::string> all = {
        "HTTP/1.1 400 Bad Request\r\n\r\n",
        "*-7\r\n",
        "$12x\r\n",
        ":12a\r\n",
        "$3\r\nabcdefgh\r\n",
        "+OK\rno\r\n",
        "-" + std::string(5000, 'e'),
        "#x\r\n",
        "=3\r\nabc\r\n",
        "$536870913\r\n",
        "*1048577\r\n",
        "_\r\n",
        ":7\r\n",
        "%1\r\n$1\r\na\r\n$1\r\nb\r\n",
        std::string(16, '\0'),
        ">-1\r\n",
        "|1\r\n>1\r\n",
        "*1\r\n*1\r\n*1\r\n*1\r\n*1\r\n*1\r\n*1\r\n*1\r\n*1\r\n:1\r\n"};
    return all;
}

const std::vector<std::string>& pushReplies()
{
    static const std::vector<std::string> all = {
        ">2\r\n$10\r\ninvalidate\r\n*1\r\n$10\r\nArm/Joint0\r\n",
        ">2\r\n$10\r\ninvalidate\r\n_\r\n",
        ">3\r\n$7\r\nmessage\r\n$1\r\nc\r\n$9\r\n$3\r\nabc\r\n\r\n", ">0\r\n",
        ">1\r\n%1\r\n+a\r\n*2\r\n:1\r\n,2.5\r\n"};
    return all;
}
