// SPDX-License-Identifier: MIT
#include "value/json_tree.h"

#include "value/json.h"
#include "value/json_number.h"

#include <new>
#include <simdjson.h>

namespace zo {

namespace {

namespace ondemand = simdjson::ondemand;

/// What reading needs and every reading of a thread uses again.
struct ReaderMemory
{
    ondemand::parser parser;
    std::string padded;
};

/// The scalar that a value spells, without what may follow it up to the next value.
std::string_view tokenOf(ondemand::value& value)
{
    std::string_view token = value.raw_json_token();
    return token.substr(0, token.find_last_not_of(" \n\r\t") + 1);
}

bool readScalar(ondemand::value& source, ZoValue& value)
{
    const std::string_view token = tokenOf(source);
    if (token == "true" || token == "false")
        value = ZoValue(token == "true");
    else if (token == "null")
        value = ZoValue();
    else
        return readJsonNumber(token, value);
    return true;
}

/// The parser does not look into what nobody asks for, so a check asks for everything.
bool check(ondemand::value source, int depth);

bool checkArray(ondemand::array elements, int depth)
{
    if (depth > jsonMaxNesting)
        return false;
    for (auto element : elements) {
        ondemand::value source;
        if (element.get(source) || !check(source, depth))
            return false;
    }
    return true;
}

bool checkObject(ondemand::object fields, int depth)
{
    if (depth > jsonMaxNesting)
        return false;
    for (auto field : fields) {
        std::string_view key;
        if (field.unescaped_key().get(key) || !check(field.value(), depth))
            return false;
    }
    return true;
}

bool check(ondemand::value source, int depth)
{
    ondemand::json_type type{};
    if (source.type().get(type))
        return false;
    if (type == ondemand::json_type::array)
        return checkArray(source.get_array(), depth + 1);
    if (type == ondemand::json_type::object)
        return checkObject(source.get_object(), depth + 1);
    std::string_view text;
    ZoValue ignored;
    return type == ondemand::json_type::string ? !source.get_string().get(text)
                                               : readScalar(source, ignored);
}

bool read(ondemand::value source, int depth, ZoValue& value, std::int64_t& elements);

bool readString(ondemand::value& source, ZoValue& value)
{
    std::string_view text;
    if (source.get_string().get(text))
        return false;
    value = ZoValue(std::string(text));
    return true;
}

/// An object is a string: its text as it stands.
bool readObject(ondemand::value& source, int depth, ZoValue& value)
{
    ondemand::object object;
    std::string_view text;
    if (source.get_object().get(object) || object.raw_json().get(text))
        return false;
    value = ZoValue(std::string(text.substr(0, text.rfind('}') + 1)));
    bool empty = false;
    return !object.reset().get(empty) && checkObject(object, depth);
}

bool readArray(ondemand::value& source, int depth, ZoValue& value, std::int64_t& elements)
{
    ondemand::array array;
    if (depth > jsonMaxNesting || source.get_array().get(array))
        return false;
    ZoValue::Elements values;
    for (auto element : array) {
        ondemand::value inner;
        --elements;
        if (elements < 0 || element.get(inner) ||
            !read(inner, depth, values.emplace_back(), elements))
            return false;
    }
    value = ZoValue::fromElements(std::move(values));
    return true;
}

bool read(ondemand::value source, int depth, ZoValue& value, std::int64_t& elements)
{
    ondemand::json_type type{};
    if (source.type().get(type))
        return false;
    switch (type) {
    case ondemand::json_type::array:
        return readArray(source, depth + 1, value, elements);
    case ondemand::json_type::object:
        return readObject(source, depth + 1, value);
    case ondemand::json_type::string:
        return readString(source, value);
    default:
        return readScalar(source, value);
    }
}

/// Reads the one element of an array that is all of `document`.
bool readOnlyElement(ondemand::document& document, ZoValue& value, std::int64_t& elements)
{
    ondemand::array array;
    if (document.get_array().get(array))
        return false;
    int count = 0;
    for (auto element : array) {
        ondemand::value source;
        if (++count > 1 || element.get(source) || !read(source, 0, value, elements))
            return false;
    }
    const char* rest = nullptr;
    return count == 1 && document.current_location().get(rest) == simdjson::OUT_OF_BOUNDS;
}

} // namespace

bool readJsonTree(std::string_view text, ZoValue& value, std::int64_t& elements)
{
    // Inside brackets of our own, every value is an element and none needs the parser's other
    // rules for a lone scalar.
    static thread_local ReaderMemory memory;
    memory.padded.clear();
    memory.padded.reserve(text.size() + 2 + simdjson::SIMDJSON_PADDING);
    memory.padded.append("[").append(text).append("]");
    ondemand::document document;
    const simdjson::error_code error =
        memory.parser.iterate(memory.padded, memory.padded.capacity()).get(document);
    if (error == simdjson::MEMALLOC)
        throw std::bad_alloc();
    return !error && readOnlyElement(document, value, elements);
}

} // namespace zo
