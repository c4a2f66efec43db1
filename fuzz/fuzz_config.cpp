// SPDX-License-Identifier: MIT
// Feeds arbitrary bytes to the loading of configuration files: the check before the parser, the
// parser, and the walk over its document.
#include "config_manager.h"
#include "guarded_array.h"
#include "model.h"
#include "module.h"
#include "require.h"
#include "saved_form.h"
#include "xml_file.h"
#include "xml_guard.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdint>
#include <string>
#include <tinyxml.h>

namespace {

std::size_t attributesOf(const TiXmlElement& element)
{
    std::size_t count = 0;
    for (const TiXmlAttribute* each = element.FirstAttribute(); each; each = each->Next())
        ++count;
    return count;
}

void measure(const TiXmlNode& node, std::size_t depth, XmlShape& shape)
{
    for (const TiXmlNode* child = node.FirstChild(); child; child = child->NextSibling()) {
        ++shape.nodes;
        shape.ancestors += depth;
        if (const TiXmlElement* element = child->ToElement()) {
            const std::size_t attributes = attributesOf(*element);
            // What closes itself does not keep the parser one level deeper.
            shape.nesting = std::max(shape.nesting, element->FirstChild() ? depth + 1 : depth);
            shape.attributes += attributes;
            shape.comparisons += attributes * attributes;
            measure(*element, depth + 1, shape);
        }
    }
}

// The check relies on figures that are never smaller than what the parser makes of the text.
void compare(const TiXmlDocument& document, const XmlShape& promised)
{
    XmlShape found;
    measure(document, 0, found);
    require(found.nesting <= promised.nesting, "nests deeper than foreseen");
    require(found.nodes <= promised.nodes, "has more nodes than foreseen");
    require(found.attributes <= promised.attributes, "has more attributes than foreseen");
    require(found.comparisons <= promised.comparisons, "takes more comparisons than foreseen");
    require(found.ancestors <= promised.ancestors, "has more ancestors than foreseen");
}

// What has the form of a saved file is given to the parser whatever its size: it must not fail.
void checkSavedForm(const std::string& text, bool parsed)
{
    SavedForm form;
    const bool beginningGoesOn = form.goesOn(text.substr(0, text.size() / 2));
    const bool goesOn = form.goesOn(text);
    require(beginningGoesOn || !goesOn, "goes on behind what deviates");
    require(isSavedForm(text) == (goesOn && form.isWhole()), "depends on how the text came");
    require(parsed || !isSavedForm(text), "has the form of a saved file and is not parsed");
}

// Loading such an entry never returns, by design.
bool neverReturns(const TiXmlElement& root)
{
    const TiXmlElement* entry = root.FirstChildElement("stm_value");
    for (; entry; entry = entry->NextSiblingElement("stm_value")) {
        if (!entry->Attribute("name") || !entry->Attribute("alias"))
            return true;
    }
    return false;
}

bool parse(const std::string& text, TiXmlDocument& document)
{
    std::string error;
    const GuardedArrays guard;
    const bool parsed = parseXml(text, document, error);
    require(parsed == error.empty(), "a refusal without a reason, or a reason without one");
    return parsed;
}

void checkRoundTrip(const boost::shared_ptr<Model>& model)
{
    TiXmlElement root("stm_viewer");
    ConfigManager::saveConfiguration(model, &root);
    const auto again = boost::make_shared<Module>(boost::shared_ptr<ZoMemoryProxy>());
    ConfigManager::loadConfiguration(again, &root);
    require(again->fModel->fSTMVals.size() == model->fSTMVals.size(), "loses entries");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    TiXmlDocument document;
    const bool parsed = parse(text, document);
    std::string normalized = text;
    normalizeXml(normalized);
    compare(document, xmlShape(normalized));
    checkSavedForm(normalized, parsed);
    const TiXmlElement* root = document.FirstChildElement("stm_viewer");
    if (!parsed || !root || neverReturns(*root))
        return 0;
    const auto module = boost::make_shared<Module>(boost::shared_ptr<ZoMemoryProxy>());
    ConfigManager::loadConfiguration(module, root);
    checkRoundTrip(module->fModel);
    return 0;
}
