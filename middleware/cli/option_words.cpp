// SPDX-License-Identifier: MIT
#include "option_words.h"

#include "command_line.h"
#include "usage_error.h"

#include <charconv>

namespace {

void readOption(Words& words, const Options& options, CliCommandLine& line)
{
    const std::string word = words.take();
    const std::size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    const auto found = options.find(name);
    if (found == options.end())
        throw UsageError("there is no option '" + name + "' here");
    const Option& option = found->second;
    std::string value;
    if (equals != std::string::npos)
        value = word.substr(equals + 1);
    else if (option.hasValue && !words.empty())
        value = words.take();
    if (option.hasValue && value.empty())
        throw UsageError(name + " needs a value");
    if (!option.hasValue && equals != std::string::npos)
        throw UsageError(name + " has no value");
    option.store(line, name, value);
}

} // namespace

bool Words::startsOption() const
{
    return !empty() && fWords[fNext].size() > 1 && fWords[fNext].front() == '-';
}

std::vector<std::string> Words::takeAll()
{
    const auto next = fWords.begin() + static_cast<std::ptrdiff_t>(fNext);
    std::vector<std::string> rest(next, fWords.end());
    fNext = fWords.size();
    return rest;
}

bool readOptions(Words& words, const Options& options, CliCommandLine& line)
{
    while (line.command == CliCommandLine::Command::None && words.startsOption()) {
        if (words.next() == "--") {
            words.take();
            return true;
        }
        readOption(words, options, line);
    }
    return false;
}

int wholeNumber(const std::string& option, const std::string& text, int highest)
{
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end || number < 1 || number > highest)
        throw UsageError(option + " must be a whole number from 1 to " + std::to_string(highest) +
                         ", not '" + text + "'");
    return number;
}
