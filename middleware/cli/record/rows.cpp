// SPDX-License-Identifier: MIT
#include "rows.h"

#include "field.h"

#include <kit/quantity.h>

#include <utility>

TableRows::TableRows(const Columns& columns) : fColumns(columns), fCells(columns.size()) {}

std::string TableRows::header() const
{
    std::string row = fTimeName;
    for (const Column& column : fColumns) {
        row += ',';
        appendField(column.name, row);
    }
    return row += endOfRow;
}

std::size_t TableRows::add(Time time, const ZoListAnswer& answer, std::string& text)
{
    for (const int i : answer.changed) {
        std::string& cell = fCells[static_cast<std::size_t>(i)];
        cell.clear();
        appendCell(answer.values[i], cell);
    }
    text += kit::secondsText(time);
    for (const std::string& cell : fCells) {
        text += ',';
        text += cell;
    }
    text += endOfRow;
    return 1;
}

void TableRows::addGap(Time time, std::string& text)
{
    text += kit::secondsText(time);
    text.append(fCells.size(), ',');
    text += endOfRow;
}

ChangeRows::ChangeRows(const Columns& columns)
{
    for (const Column& column : columns) {
        fKeys.emplace_back();
        appendField(recordedName(column.key), fKeys.back());
    }
}

std::string ChangeRows::header() const
{
    return std::string(fTimeName) + ",key,type,value" + std::string(endOfRow);
}

std::size_t ChangeRows::add(Time time, const ZoListAnswer& answer, std::string& text)
{
    if (std::exchange(fIsBehindGap, false))
        return addFirst(time, answer, text);
    const std::string start = kit::secondsText(time) + ",";
    for (const int i : answer.changed)
        addValue(start, static_cast<std::size_t>(i), answer.values[i], text);
    return answer.changed.size();
}

std::size_t ChangeRows::addFirst(Time time, const ZoListAnswer& answer, std::string& text)
{
    const std::string start = kit::secondsText(time) + ",";
    for (std::size_t i = 0; i < fKeys.size(); ++i)
        addValue(start, i, answer.values[static_cast<int>(i)], text);
    return fKeys.size();
}

void ChangeRows::addValue(const std::string& start, std::size_t key, const ZoValue& value,
                          std::string& text) const
{
    text += start;
    text += fKeys[key];
    text += ',';
    text += ZoValue::typeName(value.getType());
    text += ',';
    appendCell(value, text);
    text += endOfRow;
}

void ChangeRows::addGap(Time time, std::string& text)
{
    text += kit::secondsText(time) + ",," + fGapType + "," + std::string(endOfRow);
    fIsBehindGap = true;
}
