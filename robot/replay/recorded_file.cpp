// SPDX-License-Identifier: MIT
#include "recorded_file.h"

#include <kit/quantity.h>

#include <utility>

namespace {

constexpr std::string_view timeName = "time";
constexpr std::string_view gapType = "gap";

bool isHeaderOfChanges(const CsvRow& row)
{
    return row.size() == 4 && row[1] == "key" && row[2] == "type" && row[3] == "value";
}

} // namespace

RecordedFile::RecordedFile(const std::string& path) : fFile(path)
{
    readHeader();
}

void RecordedFile::readHeader()
{
    if (!fFile.next(fRow))
        fFile.refuse("it is empty, or ends within its first row");
    if (fRow[0] != timeName)
        fFile.refuse(
            "the first column is called '" + std::string(fRow[0].substr(0, 40)) +
            "' and not 'time': is this a recording of zo record, with commas between columns?");
    fFields = fRow.size();
    fHasChanges = isHeaderOfChanges(fRow);
    if (fFields < 2)
        fFile.refuse("there is no column beside the time");
    for (std::size_t i = 1; i < fFields && !fHasChanges; ++i)
        if (keyCalled(fRow[i]) != i - 1)
            fFile.refuse("two columns are called '" + std::string(fRow[i]) + "'");
}

void RecordedFile::rewind()
{
    fFile.rewind();
    if (!fFile.next(fRow) || !isHeader(fRow))
        fFile.refuse(
            "it is not the first row that was there before: somebody has changed the file");
    fHasRow = false;
    fLastTime = {};
    forgetValues();
}

bool RecordedFile::isHeader(const CsvRow& row) const
{
    if (row.size() != fFields || isHeaderOfChanges(row) != fHasChanges)
        return false;
    for (std::size_t i = 1; i < fFields && !fHasChanges; ++i)
        if (row[i] != fKeys[i - 1])
            return false;
    return true;
}

bool RecordedFile::next(ReplayStep& step)
{
    step.isGap = false;
    if (!nextRow())
        return false;
    step.time = timeOf(fRow);
    if (step.time < fLastTime)
        fFile.refuse("its time is before that of the row above");
    fLastTime = step.time;
    if (!fHasChanges) {
        takeTableRow(step);
        return true;
    }
    step.cells.clear();
    fStepBytes = 0;
    do
        takeChange(step);
    while (nextRow() && timeOf(fRow) == step.time && !step.isGap && fRow[2] != gapType);
    return true;
}

/// Whether there is a row that no step has taken.
bool RecordedFile::nextRow()
{
    if (fHasRow)
        return true;
    if (!fFile.next(fRow))
        return false;
    if (fRow.size() != fFields)
        fFile.refuse("it has " + std::to_string(fRow.size()) + " columns, not " +
                     std::to_string(fFields) + " as the first row");
    fHasRow = true;
    return true;
}

/// The texts of the step before are used again: a row may have thousands.
void RecordedFile::takeTableRow(ReplayStep& step)
{
    fHasRow = false;
    step.cells.resize(fRow.size() - 1);
    for (std::size_t i = 0; i < step.cells.size(); ++i) {
        step.cells[i].key = i;
        step.cells[i].text = fRow[i + 1];
    }
}

void RecordedFile::takeChange(ReplayStep& step)
{
    fHasRow = false;
    step.isGap = fRow[2] == gapType;
    if (step.isGap) {
        forgetValues();
        return;
    }
    const std::size_t key = keyCalled(fRow[1]);
    checkBounds(key, fRow[3].size());
    step.cells.push_back({key, std::string(fRow[3])});
}

/// A table is bounded by its rows; changes could name ever more keys, or one of them ever more
/// often at one moment.
void RecordedFile::checkBounds(std::size_t key, std::size_t size)
{
    fSizes.resize(fKeys.size());
    fBytes = fBytes - fSizes[key] + size;
    fSizes[key] = size;
    fStepBytes += size + sizeof(ReplayStep::Cell);
    const std::string most = std::to_string(CsvFile::fMostBytes >> 20) + " MiB";
    if (fKeys.size() > CsvFile::fMostFields)
        fFile.refuse("it is that of one key more than " + std::to_string(CsvFile::fMostFields));
    if (fBytes > CsvFile::fMostBytes)
        fFile.refuse("with it, names and values of all keys take more than " + most);
    if (fStepBytes > CsvFile::fMostBytes)
        fFile.refuse("with it, the changes of one moment take more than " + most);
}

void RecordedFile::forgetValues()
{
    for (std::size_t& size : fSizes)
        fBytes -= std::exchange(size, 0);
}

std::chrono::milliseconds RecordedFile::timeOf(const CsvRow& row) const
{
    const std::string_view text = row[0];
    if (const auto time = kit::secondsIn(text))
        return *time;
    fFile.refuse("'" + std::string(text.substr(0, 40)) + "' is no time in seconds");
}

std::size_t RecordedFile::keyCalled(std::string_view name)
{
    const auto [found, isNew] = fPlaces.try_emplace(std::string(name), fKeys.size());
    if (isNew) {
        fKeys.emplace_back(name);
        fBytes += name.size();
    }
    return found->second;
}
