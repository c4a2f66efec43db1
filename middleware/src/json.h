#pragma once

#include <zo/value.h>

#include <string>
#include <string_view>

/// The robot's memory holds JSON texts; these two functions are the whole of that format.

/// The value that `text` stands for. JSON numbers, booleans, strings and arrays have their types;
/// a number with a fraction or an exponent is a float, as is one beyond 64-bit integers; `NaN`,
/// `Infinity` and `-Infinity` are floats; `null` is invalid. An object, and any text that is no
/// JSON, is a string as it stands. Never fails, whatever the bytes.
ZoValue decodeJson(std::string_view text);

/// A text that decodeJson turns back into `value`. Throws ZoError for what has no such text: an
/// array that holds a number that is not finite, or a string that is not UTF-8.
std::string encodeJson(const ZoValue& value);

/// Appends JSON for `value`, for people to read: what is not finite is written `nan`, `inf`.
void appendJsonForDisplay(const ZoValue& value, std::string& text);
