// SPDX-License-Identifier: MIT
#include "replayed_values.h"

#include <zo/json.h>

#include <utility>

void ReplayedValues::apply(const ReplayStep& step)
{
    if (step.isGap)
        clear();
    for (const ReplayStep::Cell& cell : step.cells)
        set(cell.key, cell.text);
}

void ReplayedValues::clear()
{
    for (std::size_t i = 0; i < fEntries.size(); ++i)
        set(i, {});
}

void ReplayedValues::startOver()
{
    for (std::size_t i = 0; i < fEntries.size(); ++i) {
        fEntries[i].isWritten = false;
        touch(i);
    }
}

void ReplayedValues::set(std::size_t key, const std::string& text)
{
    if (key >= fEntries.size())
        fEntries.resize(key + 1);
    Entry& entry = fEntries[key];
    if (entry.isWritten && entry.wanted == text)
        return;
    entry.wanted = text;
    touch(key);
}

void ReplayedValues::touch(std::size_t key)
{
    if (!std::exchange(fEntries[key].isTouched, true))
        fTouched.push_back(key);
}

ZoValue ReplayedValues::takeChanged(const std::vector<std::string>& keys)
{
    ZoValue::Elements pairs;
    for (const std::size_t key : fTouched) {
        Entry& entry = fEntries[key];
        entry.isTouched = false;
        if (entry.isWritten && entry.wanted == entry.written)
            continue;
        entry.written = entry.wanted;
        entry.isWritten = true;
        ZoValue value = entry.wanted.empty() ? ZoValue() : ZoJson::valueOf(entry.wanted);
        pairs.push_back(ZoValue::fromElements({ZoValue(keys[key]), std::move(value)}));
    }
    fTouched.clear();
    return ZoValue::fromElements(std::move(pairs));
}
