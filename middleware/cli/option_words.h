// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

struct CliCommandLine;

/// The words of a command line, taken from the front.
class Words
{
public:
    explicit Words(std::vector<std::string> words) : fWords(std::move(words)) {}

    bool empty() const { return fNext == fWords.size(); }
    /// Whether the next word looks like an option.
    bool startsOption() const;
    /// The next word, which must be there; take goes on behind it.
    const std::string& next() const { return fWords[fNext]; }
    std::string take() { return fWords[fNext++]; }
    std::vector<std::string> takeAll();

private:
    std::vector<std::string> fWords;
    std::size_t fNext = 0;
};

struct Option
{
    bool hasValue;
    /// Called with the option's name and its value, which is empty where there is none.
    void (*store)(CliCommandLine& line, const std::string& name, const std::string& value);
};
using Options = std::unordered_map<std::string, Option>;

/// Takes options, as in "--period 60" or "--period=60", up to the first word that is none; also
/// stops behind "--", and behind an option that settles the command. Returns whether "--" was
/// there. Throws UsageError for an option that is not in `options` or lacks its value.
bool readOptions(Words& words, const Options& options, CliCommandLine& line);

/// `text` as a number from 1 to `highest`; throws UsageError that names `option`.
int wholeNumber(const std::string& option, const std::string& text, int highest);
