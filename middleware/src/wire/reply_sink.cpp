// SPDX-License-Identifier: MIT
#include "wire/reply_sink.h"

namespace zo {

const char* nameOf(ReplyKind kind)
{
    static constexpr const char* names[] = {"a status",
                                            "an error",
                                            "a number",
                                            "a text",
                                            "nil",
                                            "a boolean",
                                            "a double",
                                            "a large integer",
                                            "a text for people",
                                            "a text too large",
                                            "an array",
                                            "a map",
                                            "a set",
                                            "a push"};
    return names[static_cast<int>(kind)];
}

std::string misplaced(const std::string& command, ReplyKind kind)
{
    return "malformed reply to " + command + ": " + nameOf(kind) + " where none belongs";
}

} // namespace zo
