// SPDX-License-Identifier: MIT
#pragma once

#include "columns.h"

#include <zo/list_answer.h>

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

/// The rows of a recording: what answers of a robot become. Times are since the epoch.
class Rows
{
public:
    static constexpr const char* fTimeName = "time";
    using Time = std::chrono::milliseconds;

    virtual ~Rows() = default;

    virtual std::string header() const = 0;
    virtual std::size_t fields() const = 0; ///< of each row
    /// Appends the rows that `answer` makes, and returns how many these are.
    virtual std::size_t add(Time time, const ZoListAnswer& answer, std::string& text) = 0;
    /// The same where no rows stand before: with every value.
    virtual std::size_t addFirst(Time time, const ZoListAnswer& answer, std::string& text) = 0;
    /// Appends the row that says: from here on it is not known what the robot had.
    virtual void addGap(Time time, std::string& text) = 0;
};

/// A row for each answer, with a column for each key.
class TableRows : public Rows
{
public:
    explicit TableRows(const Columns& columns);

    std::string header() const override;
    std::size_t fields() const override { return fCells.size() + 1; }
    std::size_t add(Time time, const ZoListAnswer& answer, std::string& text) override;
    std::size_t addFirst(Time time, const ZoListAnswer& answer, std::string& text) override
    {
        return add(time, answer, text); // each row has every value
    }
    void addGap(Time time, std::string& text) override;

private:
    const Columns fColumns;
    std::vector<std::string> fCells; ///< of the last answer: most values stay what they were
};

/// A row for each value that changed; for every value at the start and behind a gap.
class ChangeRows : public Rows
{
public:
    static constexpr const char* fGapType = "gap"; ///< of rows without a key

    explicit ChangeRows(const Columns& columns);

    std::string header() const override;
    std::size_t fields() const override { return 4; }
    std::size_t add(Time time, const ZoListAnswer& answer, std::string& text) override;
    std::size_t addFirst(Time time, const ZoListAnswer& answer, std::string& text) override;
    void addGap(Time time, std::string& text) override;

private:
    void addValue(const std::string& start, std::size_t key, const ZoValue& value,
                  std::string& text) const;

    std::vector<std::string> fKeys; ///< as fields
    bool fIsBehindGap = false;
};
