// SPDX-License-Identifier: MIT
#include <kit/options_text.h>

#include <algorithm>

namespace kit {

namespace {

constexpr std::size_t lineWidth = 90;

std::string leftOf(const Option& option)
{
    std::string left;
    for (const std::string& name : option.names)
        left += (left.empty() ? "  " : ", ") + name;
    return option.value.empty() ? left : left + " " + option.value;
}

/// `text` broken at blanks into lines of at most `width` bytes, each but the first behind `indent`
/// blanks.
std::string wrapped(const std::string& text, std::size_t width, std::size_t indent)
{
    std::string lines;
    std::size_t start = 0;
    while (text.size() - start > width) {
        const std::size_t blank = text.rfind(' ', start + width);
        if (blank == std::string::npos || blank <= start)
            break; // a word longer than the line stays whole
        lines += text.substr(start, blank - start) + "\n" + std::string(indent, ' ');
        start = blank + 1;
    }
    return lines + text.substr(start) + "\n";
}

} // namespace

std::string optionsText(const Options& options)
{
    std::size_t indent = 0;
    for (const Option& option : options)
        indent = std::max(indent, leftOf(option).size() + 2);
    std::string text;
    for (const Option& option : options) {
        std::string left = leftOf(option);
        left.resize(indent, ' ');
        text += left + wrapped(option.help, lineWidth - indent, indent);
    }
    return text;
}

} // namespace kit
