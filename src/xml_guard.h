// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

/// What the XML parser would meet in a text. The parser recurses once per nested element and steps
/// over whole UTF-8 characters without looking for the end; and some of its work grows faster than
/// the text: so these figures decide whether it may be given the text at all. They are never too
/// small, and too large at most where the parser gives up.
struct XmlShape
{
    std::size_t bytes = 0;
    bool isUtf8 = false;
    std::size_t nesting = 0;      ///< most elements open at once
    std::size_t nodes = 0;        ///< tags but end tags, comments, declarations, and texts
    std::size_t attributes = 0;   ///< in all tags
    std::size_t comparisons = 0;  ///< of the names of attributes within their tags, long ones more
    std::size_t ancestors = 0;    ///< elements open around each node, summed up
    std::size_t references = 0;   ///< what may stand for a character, like "&lt;"
    bool cutCharacter = false;    ///< is UTF-8 and ends inside a character
    bool unclearEncoding = false; ///< declares an encoding written with character references
};

const std::size_t xmlMaxNesting = 256;
/// Some half a second's work, which makes half a gigabyte of nodes at most.
const std::size_t xmlMaxEffort = std::size_t(64) << 20;

/// The text as the parser reads it: up to the first zero byte, each line end a single '\n'.
void normalizeXml(std::string& text);

/// Measures a normalized text; linear in its length.
XmlShape xmlShape(const std::string& text);

/// What parsing takes, in units of a byte of plain text; the document's memory follows it.
std::size_t xmlEffort(const XmlShape& shape);

/// Why the parser must not be given a text of this shape, in one line; empty when it may.
std::string xmlRefusal(const XmlShape& shape);
