// SPDX-License-Identifier: MIT
#include "simulation/answer_stream.h"

void AnswerStream::say(std::string_view bytes, Word word, Fault fault)
{
    forgetOld();
    const std::size_t begin = fForgotten + fBytes.size();
    fBytes.append(bytes);
    fSayings.push_back({begin, begin + bytes.size(), word, fault});
}

Arrival AnswerStream::arrive(std::size_t size)
{
    Arrival arrival{};
    arrival.bytes = std::string_view(fBytes).substr(fArrived - fForgotten, size);
    fArrived += arrival.bytes.size();
    const std::size_t before = fWhole;
    while (fWhole < fSayings.size() && fSayings[fWhole].end <= fArrived)
        ++fWhole;
    arrival.first = fSayings.data() + before;
    arrival.last = fSayings.data() + fWhole;
    for (; fLooked < fSayings.size() && fSayings[fLooked].begin < fArrived; ++fLooked) {
        if (isReply(fSayings[fLooked]))
            ++fBegun;
    }
    arrival.begun = fBegun;
    for (const Saying& saying : fSayings) {
        if (saying.word == Word::Spoilt) {
            arrival.mayNotice = arrival.mayNotice || saying.begin < fArrived;
            arrival.mustNotice = arrival.mustNotice || saying.end <= fArrived;
        }
    }
    return arrival;
}

void AnswerStream::forgetOld()
{
    if (waiting() > 0 || fBytes.empty())
        return;
    fForgotten += fBytes.size();
    fBytes.clear();
    fSayings.clear();
    fWhole = 0;
    fLooked = 0;
}

/// As far as can be told from how it begins.
bool AnswerStream::isReply(const Saying& saying) const
{
    return saying.word != Word::Push && fBytes[saying.begin - fForgotten] != '>';
}
