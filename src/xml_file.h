// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

class TiXmlDocument;

/// Larger files are refused, but for those in the form in which the panel itself saves: what it
/// saved it opens, whatever the size.
const std::size_t xmlMaxBytes = std::size_t(64) << 20;

/// Parses the whole of an open stream into `document`. False when that is refused or fails;
/// `error` then tells why in one line. Never blocks on what is no ordinary file.
bool loadXml(std::FILE* stream, TiXmlDocument& document, std::string& error);

/// The same for bytes that were read already.
bool parseXml(std::string text, TiXmlDocument& document, std::string& error);
