// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace kit {

/// The words of a command line, taken from the front.
class Words
{
public:
    explicit Words(std::vector<std::string> words) : fWords(std::move(words)) {}

    bool empty() const { return fNext == fWords.size(); }
    /// Whether the next word looks like an option.
    bool startsOption() const;
    std::size_t left() const { return fWords.size() - fNext; }
    /// The next word, which must be there; take goes on behind it.
    const std::string& next() const { return fWords[fNext]; }
    std::string take() { return fWords[fNext++]; }
    std::vector<std::string> takeAll();

private:
    std::vector<std::string> fWords;
    std::size_t fNext = 0;
};

/// One option of a program: how it is written, what --help says of it, and what it does.
struct Option
{
    std::vector<std::string> names; ///< "--connect": each way to write it
    std::string value;              ///< what --help calls its value; empty: it has none
    std::string help;
    /// Gets the name as it was written, and the value, which is empty where there is none. Throws
    /// UsageError for a value that is no good.
    std::function<void(const std::string& name, const std::string& value)> store;
    bool settles = false;                  ///< what follows does not matter, as behind --help
    std::vector<std::string> choices = {}; ///< all that the value may be; empty: more than a few
};
using Options = std::vector<Option>;

// The usual kinds. What they store into must outlive them.

Option flag(const std::string& name, const std::string& help, bool& target);
Option textOption(const std::string& name, const std::string& value, const std::string& help,
                  std::string& target);
/// Does `act`, and settles what the program does.
Option settlingOption(const std::vector<std::string>& names, const std::string& help,
                      const std::function<void()>& act);
/// --help and --version, which every program has: each settles, and does the one or the other.
Options aboutOptions(const std::function<void()>& help, const std::function<void()>& version);

/// Those of both, in this order.
Options joined(Options first, Options second);

/// What stopped readOptions.
enum class OptionsEnd
{
    Operand, ///< or the end of the words
    Dashes,  ///< "--", which is taken
    Settled  ///< an option that settles
};

/// Takes options, as in "--period 60" or "--period=60", up to the first word that is none. The
/// word behind an option that has a value is that value, whatever it begins with. Throws
/// UsageError for an option that is not in `options`, lacks its value or has one too many.
OptionsEnd readOptions(Words& words, const Options& options);

/// Takes the next word, which starts an option, and its value. Whether it settles. Throws as above.
bool readOption(Words& words, const Options& options);
/// Throws UsageError when there is none.
const Option& optionCalled(const std::string& name, const Options& options);

/// For programs without operands: throws UsageError that names the next word, if there is one.
void refuseOperands(const Words& words);

/// ms: an hour, the longest time that an option may ask for.
constexpr int longestTime = 3600000;

/// The number that `text` spells out whole, in decimal and without blanks; throws UsageError that
/// names `option` and the limits, which are allowed. For int, std::uint32_t and double.
template <typename Number>
Number numberFrom(const std::string& option, const std::string& text, Number lowest,
                  Number highest);

/// An option for such a number.
template <typename Number>
Option numberOption(const std::string& name, const std::string& value, const std::string& help,
                    Number lowest, Number highest, Number& target)
{
    return {{name}, value, help, [=, &target](const std::string& option, const std::string& text) {
                target = numberFrom<Number>(option, text, lowest, highest);
            }};
}

} // namespace kit
