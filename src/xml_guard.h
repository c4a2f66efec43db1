#pragma once

#include <cstddef>
#include <string>

/// What the XML parser would meet in a text. The parser recurses once per nested element, compares
/// each attribute with all others of its element, and steps over whole UTF-8 characters without
/// looking for the end: so these figures decide whether it may be given the text at all. They are
/// exact for a text that parses, and never too small for one that does not.
struct XmlShape
{
    std::size_t nesting = 0;      ///< most elements open at once
    std::size_t attributes = 0;   ///< most attributes in one tag
    std::size_t tags = 0;         ///< markup of any kind: tags, comments, declarations
    bool cutCharacter = false;    ///< is UTF-8 and ends inside a character
    bool unclearEncoding = false; ///< declares an encoding written with character references
};

const std::size_t xmlMaxNesting = 256;
const std::size_t xmlMaxAttributes = 256;
const std::size_t xmlMaxTags = 4000000;

/// The text as the parser reads it: up to the first zero byte, each line end a single '\n'.
void normalizeXml(std::string& text);

/// Measures a normalized text; linear in its length.
XmlShape xmlShape(const std::string& text);

/// Why the parser must not be given a text of this shape, in one line; empty when it may.
std::string xmlRefusal(const XmlShape& shape);
