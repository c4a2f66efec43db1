// SPDX-License-Identifier: MIT
#include <kit/completion.h>
#include <kit/program.h>
#include <kit/shell_line.h>

#include <value/control_character.h>

#include <exception>

namespace kit {

namespace {

constexpr int longestWait = 1500000; ///< us

Completion namesOf(const Options& options)
{
    Completion names;
    for (const Option& option : options)
        names.texts.insert(names.texts.end(), option.names.begin(), option.names.end());
    return names;
}

/// `before` is what stands before the value in the same word.
Completion valueOf(const Option& option, const std::string& before = {})
{
    Completion values{{}, option.value == "FILE" || option.value == "DIR"};
    for (const std::string& choice : option.choices)
        values.texts.push_back(before + choice);
    return values;
}

/// The last word, which begins as an option does.
Completion optionOrValue(const std::string& word, const Options& options)
{
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos)
        return namesOf(options);
    return valueOf(optionCalled(word.substr(0, equals), options), word.substr(0, equals + 1));
}

/// Whether the last word is the value of the option before it.
bool isBeforeItsValue(const Words& words, const Options& options)
{
    return words.left() == 2 && words.next().find('=') == std::string::npos &&
           !optionCalled(words.next(), options).value.empty();
}

/// Lines and terminals can take it as it stands.
bool isPrintable(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i)
        if (zo::controlCharacterSize(text.substr(i)) > 0)
            return false;
    return !text.empty();
}

/// Those of `all` that begin with `start`.
std::vector<std::string> fitting(const std::vector<std::string>& all, const std::string& start)
{
    std::vector<std::string> texts;
    for (const std::string& text : all)
        if (text.compare(0, start.size(), start) == 0 && isPrintable(text))
            texts.push_back(text);
    return texts;
}

int printed(const Completion& completion, const std::vector<std::string>& texts)
{
    std::string lines;
    for (const std::string& text : texts)
        lines += text + '\n';
    print(lines);
    return completion.isFile ? exitWantsFile : exitDone;
}

int answerWords(std::vector<std::string> words, const Complete& complete)
{
    words.erase(words.begin());
    const Completion completion = complete(words);
    return printed(completion, fitting(completion.texts, words.back()));
}

int answerLine(const std::string& text, const std::string& breaks, const Complete& complete)
{
    const ShellLine line = shellLineFrom(text, breaks);
    if (line.words.size() < 2)
        return exitDone; // the program's name itself
    const Completion completion = complete({line.words.begin() + 1, line.words.end()});
    std::vector<std::string> texts = fitting(completion.texts, line.words.back());
    for (std::string& each : texts)
        each = quotedBehind(line, each);
    return printed(completion, texts);
}

} // namespace

std::optional<Completion> completeOptions(Words& words, const Options& options)
{
    while (!words.empty() && words.next().compare(0, 1, "-") == 0) {
        if (words.left() == 1)
            return optionOrValue(words.next(), options);
        if (words.next() == "--" || words.next() == "-")
            return {};
        if (isBeforeItsValue(words, options))
            return valueOf(optionCalled(words.next(), options));
        if (readOption(words, options))
            return Completion{}; // what follows does not matter
    }
    return {};
}

bool isAskedToComplete(const std::vector<std::string>& words)
{
    return (words.size() > 1 && words[0] == "--complete") ||
           (words.size() == 3 && words[0] == "--complete-line");
}

int answerShell(const std::vector<std::string>& words, const Complete& complete)
{
    endWellAfter(longestWait);
    try {
        return words[0] == "--complete" ? answerWords(words, complete)
                                        : answerLine(words[1], words[2], complete);
    } catch (const std::exception&) {
        return exitDone;
    }
}

} // namespace kit
