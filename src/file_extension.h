#pragma once

/// What the names of configuration files end in, behind a dot.
constexpr const char* configFileExtension = "xml";
