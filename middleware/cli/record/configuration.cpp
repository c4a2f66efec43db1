// SPDX-License-Identifier: MIT
#include "configuration.h"

#include "config_manager.h"
#include "config_names.h"
#include "file_stream.h"
#include "xml_file.h"

#include <kit/system_text.h>
#include <kit/usage_error.h>

#include <QFile>
#include <QString>

#include <cerrno>
#include <tinyxml.h>

namespace {

using kit::UsageError;

[[noreturn]] void refuse(const std::string& path, const std::string& why)
{
    throw UsageError("the configuration file '" + path + "' " + why);
}

void readXml(const std::string& path, TiXmlDocument& document)
{
    const FileStream stream = openForReading(QString::fromUtf8(path.c_str()));
    if (!stream)
        refuse(path, "cannot be read: " + kit::messageOf(errno));
    std::string error;
    if (!loadXml(stream.get(), document, error))
        refuse(path, "is no configuration: " + error);
}

/// What follows the keys of a file, or waits for ever for what an element lacks, is no matter of a
/// recording: it looks at each by itself.
std::string attributeOf(const TiXmlElement& element, const std::string& name,
                        const std::string& path)
{
    if (const std::string* value = element.Attribute(name))
        return *value;
    refuse(path, "has an element '" + element.ValueStr() + "' without '" + name + "' in line " +
                     std::to_string(element.Row()));
}

bool isWatched(const TiXmlElement& element)
{
    bool watched = false;
    ConfigManager::readBool(ConfigNames::fWatch, &element, watched);
    return watched;
}

} // namespace

Columns watchedColumns(const std::string& path)
{
    TiXmlDocument document;
    readXml(path, document);
    const TiXmlElement* root = document.FirstChildElement(ConfigNames::fRoot);
    if (!root)
        refuse(path,
               std::string("is no configuration: it has no element '") + ConfigNames::fRoot + "'");
    Columns columns;
    const char* const entry = ConfigNames::fEntry;
    for (const TiXmlElement* element = root->FirstChildElement(entry); element;
         element = element->NextSiblingElement(entry)) {
        const std::string key = attributeOf(*element, ConfigNames::fName, path);
        const std::string alias = attributeOf(*element, ConfigNames::fAlias, path);
        if (isWatched(*element))
            columns.push_back({key, alias});
    }
    if (columns.empty())
        refuse(path, "watches no key: tick Watch in a panel for each to record, and save it");
    return columns;
}
