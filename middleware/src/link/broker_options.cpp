// SPDX-License-Identifier: MIT
#include <zo/broker_options.h>
#include <zo/error.h>

#include "value/control_character.h"
#include "value/printable.h"
#include "value/utf8.h"

#include <string_view>

namespace {

/// What is wrong with the character that `text` begins with; empty: nothing. `size`: its bytes.
std::string faultAt(std::string_view text, std::size_t& size)
{
    size = zo::characterAt(text, 0);
    if (size == 0)
        return "it is no UTF-8";
    if (text.front() == ' ')
        return "there is a blank in it";
    return zo::controlCharacterSize(text) > 0 ? "there is a control character in it" : "";
}

std::string faultOf(std::string_view prefix)
{
    if (prefix.size() > ZoBrokerOptions::fLongestPrefix)
        return "it is longer than " + std::to_string(ZoBrokerOptions::fLongestPrefix) + " bytes";
    std::string fault;
    for (std::size_t size = 0; fault.empty() && !prefix.empty(); prefix.remove_prefix(size))
        fault = faultAt(prefix, size);
    return fault;
}

} // namespace

void ZoBrokerOptions::checkPrefix(const std::string& prefix)
{
    const std::string fault = faultOf(prefix);
    if (!fault.empty())
        throw ZoError("prefix \"" + zo::printable(prefix) + "\": " + fault);
}
