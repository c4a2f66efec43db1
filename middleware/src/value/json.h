// SPDX-License-Identifier: MIT
#pragma once

#include <zo/value.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace zo {

/// The robot's memory holds JSON texts; the first two functions are the whole of that format.

/// Arrays and objects inside one another; a text that nests deeper is a string as it stands.
constexpr int jsonMaxNesting = 128;

/// The value that `text` stands for. JSON numbers, booleans, strings and arrays have their types;
/// a number with a fraction or an exponent is a float, as is one beyond 64-bit integers; `NaN`,
/// `Infinity` and `-Infinity` are floats; `null` is invalid. An object, also one inside an array,
/// and any text that is no JSON, is a string as it stands. White space around a JSON value does
/// not count. Whatever the bytes, it throws only when memory runs out.
ZoValue decodeJson(std::string_view text);

/// The same for a text from the other side of a network, where two bytes make an element of an
/// array that takes forty: `elements` is how many may still be made, at all depths together, and
/// becomes fewer by those that were. A text that goes on when none may is invalid, and makes none.
ZoValue decodeJson(std::string_view text, std::int64_t& elements);

/// A text that decodeJson turns back into `value`. Throws ZoError for what has no such text: an
/// array that holds a NaN or a string that is not UTF-8, or that nests too deep.
std::string encodeJson(const ZoValue& value);

/// Appends JSON of an array for people to read: what is not finite is written `nan`, `inf`, and
/// no string is refused. It may end early once `text` is longer than `limit`.
void appendJsonForDisplay(const ZoValue::Elements& values, std::size_t limit, std::string& text);

} // namespace zo
