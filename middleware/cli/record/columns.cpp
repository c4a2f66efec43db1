// SPDX-License-Identifier: MIT
#include "columns.h"

#include "rows.h"

#include <kit/usage_error.h>

#include <QByteArray>
#include <QString>

#include <set>
#include <utility>

namespace {

void tellRenamed(const Columns& renamed, const std::function<void(const std::string&)>& tell)
{
    if (renamed.empty())
        return;
    const std::size_t others = renamed.size() - 1;
    tell("the column of '" + renamed[0].key + "' is called '" + renamed[0].name +
         "', as its name is that of another" +
         (others > 0 ? "; so are " + std::to_string(others) + " more" : ""));
}

} // namespace

Columns columnsOf(const std::vector<std::string>& keys)
{
    Columns columns;
    columns.reserve(keys.size());
    for (const std::string& key : keys)
        columns.push_back({key, key});
    return columns;
}

Columns withDistinctNames(const Columns& columns,
                          const std::function<void(const std::string&)>& tell)
{
    Columns distinct;
    Columns renamed;
    std::set<std::pair<std::string, std::string>> known;
    std::set<std::string> names{Rows::fTimeName};
    for (const Column& column : columns) {
        if (!known.insert({column.key, column.name}).second)
            continue;
        const std::string wanted = recordedName(column.name);
        std::string name = wanted;
        while (!names.insert(name).second)
            name += " (" + recordedName(column.key) + ")";
        distinct.push_back({column.key, name});
        if (name != wanted)
            renamed.push_back(distinct.back());
    }
    tellRenamed(renamed, tell);
    return distinct;
}

void checkNoChanges(const Columns& columns)
{
    if (TableRows(columns).header() == ChangeRows({}).header())
        throw kit::UsageError("columns called key, type and value look like those of --changes: "
                              "name them in another order, or use --changes");
}

std::string recordedName(const std::string& name)
{
    // Behind a letter: a byte-order mark at the very beginning would be left out.
    const QByteArray bytes = "_" + QByteArray::fromStdString(name);
    const bool isUtf8 = QString::fromUtf8(bytes.constData(), bytes.size()).toUtf8() == bytes;
    const auto size = static_cast<int>(name.size());
    return isUtf8 ? name : QString::fromLatin1(name.data(), size).toUtf8().toStdString();
}
