// SPDX-License-Identifier: MIT
#include "config_manager.h"

#include "broken_pipe_shield.h"
#include "config_names.h"
#include "file_stream.h"
#include "model.h"
#include "module.h"
#include "xml_file.h"

#include <QString>

#include <boost/make_shared.hpp>

#include <memory>
#include <stdexcept>
#include <stdio_ext.h>
#include <tinyxml.h>
#include <utility>

namespace {

std::runtime_error failure(const QString& message)
{
    return std::runtime_error(message.toUtf8().constData());
}

/// The attributes as the library takes them, made once: a file has seven of them for each key.
struct AttributeNames
{
    const std::string name = ConfigNames::fName;
    const std::string alias = ConfigNames::fAlias;
    const std::string watch = ConfigNames::fWatch;
    const std::string graph = ConfigNames::fGraph;
    const std::string red = ConfigNames::fRed;
    const std::string green = ConfigNames::fGreen;
    const std::string blue = ConfigNames::fBlue;
};

const AttributeNames& attributeNames()
{
    static const AttributeNames names;
    return names;
}

// The library's own way to write an integer gives the same text and takes twice as long.
void setNumber(TiXmlElement& element, const std::string& name, int number)
{
    element.SetAttribute(name, std::to_string(number));
}

TiXmlElement* newColorElement(const Color& color)
{
    const AttributeNames& names = attributeNames();
    auto* element = new TiXmlElement(ConfigNames::fColor);
    setNumber(*element, names.red, color.red);
    setNumber(*element, names.green, color.green);
    setNumber(*element, names.blue, color.blue);
    return element;
}

TiXmlElement* newEntryElement(const STMVal& value)
{
    const AttributeNames& names = attributeNames();
    auto* element = new TiXmlElement(ConfigNames::fEntry);
    element->SetAttribute(names.name, value.names.first);
    element->SetAttribute(names.alias, value.names.second);
    setNumber(*element, names.watch, value.watch ? 1 : 0);
    setNumber(*element, names.graph, value.graph ? 1 : 0);
    element->LinkEndChild(newColorElement(value.color));
    return element;
}

void readColor(const TiXmlElement* entry, Color& color)
{
    const AttributeNames& names = attributeNames();
    const TiXmlElement* element = entry->FirstChildElement(ConfigNames::fColor);
    if (!element)
        return;
    ConfigManager::readInt(names.red, element, color.red);
    ConfigManager::readInt(names.green, element, color.green);
    ConfigManager::readInt(names.blue, element, color.blue);
}

bool readEntry(const TiXmlElement* element, STMVal& value)
{
    const AttributeNames& names = attributeNames();
    const std::string* name = element->Attribute(names.name);
    const std::string* alias = element->Attribute(names.alias);
    if (!name || !alias)
        return false;
    value.names = {*name, *alias};
    ConfigManager::readBool(names.watch, element, value.watch);
    ConfigManager::readBool(names.graph, element, value.graph);
    readColor(element, value.color);
    return true;
}

} // namespace

bool ConfigManager::readInt(const std::string& name, const TiXmlElement* element, int& target)
{
    int value = 0;
    if (!element->Attribute(name, &value))
        return false;
    target = value;
    return true;
}

bool ConfigManager::readBool(const std::string& name, const TiXmlElement* element, bool& target)
{
    int value = 0;
    if (!readInt(name, element, value))
        return false;
    target = value != 0;
    return true;
}

// The callers keep what they pass: the operations share it.
// NOLINTBEGIN(performance-unnecessary-value-param)
bool ConfigManager::saveConfiguration(boost::shared_ptr<Model const> model, TiXmlElement* root)
{
    const ZoCriticalSectionRead guard(model->fMutex);
    for (const auto& value : model->fSTMVals)
        root->LinkEndChild(newEntryElement(*value));
    return true;
}

bool ConfigManager::loadConfiguration(boost::shared_ptr<Module> module, const TiXmlElement* root)
{
    if (!root)
        return false;
    const TiXmlElement* element = root->FirstChildElement(ConfigNames::fEntry);
    while (element) {
        auto value = boost::make_shared<STMVal>();
        // An entry without its names is tried again, for ever: deliberately, no call that comes
        // back has taken a part of a damaged key set for the whole of it.
        if (!readEntry(element, *value))
            continue;
        module->addSTMVal(value);
        element = element->NextSiblingElement(ConfigNames::fEntry);
    }
    return true;
}

// NOLINTEND(performance-unnecessary-value-param)

void ConfigManager::saveConfigurationFile(boost::shared_ptr<Model const> model, const QString& path)
{
    const BrokenPipeShield shield; // outlives the stream, which writes its last bytes as it closes
    const FileStream stream = openForWriting(path);
    if (!stream) {
        // The second marker has nothing to fill it and is shown as it stands.
        throw failure(tr("Failed to open location %1 for writing.\n%2\n"
                         "Configuration file will not be saved.")
                          .arg(path));
    }
    auto root = std::make_unique<TiXmlElement>(ConfigNames::fRoot);
    if (!saveConfiguration(std::move(model), root.get())) {
        throw failure(
            tr("Failed to compute XML configuration to be written at location %1.").arg(path));
    }
    TiXmlDocument document;
    document.LinkEndChild(root.release());
    __fsetlocking(stream.get(), FSETLOCKING_BYCALLER); // nobody else ever sees the stream
    static_cast<void>(document.SaveFile(stream.get()));
}

void ConfigManager::loadConfigurationFile(boost::shared_ptr<Module> module, const QString& path)
{
    FileStream stream = openForReading(path);
    if (!stream) {
        throw failure(tr("Failed to open location %1 for reading.\n"
                         "Configuration file will not be loaded.")
                          .arg(path));
    }
    TiXmlDocument document;
    std::string error;
    if (!loadXml(stream.get(), document, error)) {
        // One after the other, so a marker within the path is filled before the last one.
        throw failure(tr("Could not parse XML from location %1.\n%2\n"
                         "Configuration file will not be loaded.")
                          .arg(path)
                          .arg(QString::fromLatin1(error.c_str())));
    }
    const TiXmlElement* root = document.FirstChildElement(ConfigNames::fRoot);
    if (!root || !loadConfiguration(std::move(module), root)) {
        throw failure(
            tr("Incorrect Tarvek Glimmet configuration file at location %1.\n.").arg(path));
    }
    // Only failures close the file.
    static_cast<void>(stream.release());
}
