// SPDX-License-Identifier: MIT
#pragma once

#include <zo/export.h>

#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

/// How much of a value `ZoValue::toString` tells.
enum _TVerbosity : int
{
    ZoBrief = 0,  ///< for lists: a text longer than 64 bytes is cut
    ZoNormal = 1, ///< for tables: a text longer than 1,024 bytes is cut
    ZoWhole = 2   ///< everything
};

/// A dynamic value: invalid, array, bool, 64-bit int, double, or string of bytes.
///
/// A plain value type: copies are deep and share nothing. Different threads may use different
/// values; one value used by several threads needs a lock.
class ZO_EXPORT ZoValue
{
public:
    /// Codes that `getType` returns.
    enum Type : int
    {
        Invalid = 0,
        Array = 1,
        Bool = 2,
        Int = 3,
        Float = 4,
        String = 5
    };

    ZoValue() noexcept = default; ///< invalid
    ZoValue(bool value) noexcept : fData(value) {}
    ZoValue(int value) noexcept : fData(std::int64_t{value}) {}
    ZoValue(std::int64_t value) noexcept : fData(value) {}
    ZoValue(double value) noexcept : fData(value) {}
    ZoValue(const std::string& value) : fData(value) {}
    ZoValue(std::string&& value) noexcept : fData(std::move(value)) {}
    ZoValue(const char* value) : fData(std::string(value)) {}
    /// An array of strings.
    ZoValue(const std::vector<std::string>& values);
    /// No other pointer is a value: without this one, any pointer would quietly become a bool.
    ZoValue(const void*) = delete;

    ZoValue(const ZoValue&) = default;
    ZoValue(ZoValue&&) noexcept = default;
    ~ZoValue() = default;
    /// `other` may be inside this value, as in `value = value[0]`.
    ZoValue& operator=(const ZoValue& other) { return *this = ZoValue(other); }
    ZoValue& operator=(ZoValue&& other) noexcept
    {
        Data data(std::move(other.fData));
        fData = std::move(data);
        return *this;
    }

    /// Only an int itself: a plain overload for int would quietly take doubles and bools too.
    template <typename T, std::enable_if_t<std::is_same_v<T, int>, int> = 0>
    ZoValue& operator=(const T& value) noexcept
    {
        fData = std::int64_t{value};
        return *this;
    }

    /// Makes this an array of `size` elements. Elements of an array that fit are kept, new ones
    /// are invalid; a value that is no array is replaced. Throws ZoError for a negative size.
    void arraySetSize(int size);

    /// Element of an array. Throws ZoError when this is no array or has no such element.
    ZoValue& operator[](int index)
    {
        return const_cast<ZoValue&>(static_cast<const ZoValue&>(*this)[index]);
    }
    const ZoValue& operator[](int index) const
    {
        const auto* elements = std::get_if<Elements>(&fData);
        if (!elements || static_cast<std::size_t>(index) >= elements->size())
            throwNoElement(index);
        return (*elements)[static_cast<std::size_t>(index)];
    }

    /// Number of elements of an array; 0 for any other type.
    int getSize() const noexcept
    {
        const auto* elements = std::get_if<Elements>(&fData);
        return elements ? static_cast<int>(elements->size()) : 0;
    }

    /// One of `Type`.
    int getType() const noexcept { return static_cast<int>(fData.index()); }
    /// The word for a code of `getType`: "invalid", "array", "bool", "int", "float" or "string";
    /// "unknown" for any other.
    static const char* typeName(int type) noexcept;

    /// The string itself, to read or change. Throws ZoError when this is no string.
    operator std::string&();
    /// The string itself. Throws ZoError when this is no string.
    const std::string& asString() const
    {
        const auto* text = std::get_if<std::string>(&fData);
        if (!text)
            throwNoString();
        return *text;
    }

    /// The value as text. A string is its own text; a bool is "true" or "false"; a number is the
    /// shortest text that strtod reads back exactly ("3" for 3 and for 3.0, "nan", "inf",
    /// "-inf"); an invalid value is ""; an array is JSON. A text too long for `verbosity` is cut
    /// after so many bytes (fewer where that would split a UTF-8 character) and ends in "...".
    /// No end of line is added. Throws only when memory runs out.
    std::string toString(_TVerbosity verbosity) const;
    /// The same into `text`, whose memory is used again.
    void toString(_TVerbosity verbosity, std::string& text) const;

    /// Same type and same content; a NaN equals a NaN.
    bool operator==(const ZoValue& other) const noexcept;
    bool operator!=(const ZoValue& other) const noexcept { return !(*this == other); }

    using Elements = std::vector<ZoValue>;
    /// An array of `elements`.
    static ZoValue fromElements(Elements elements) noexcept;

    using Data = std::variant<std::monostate, Elements, bool, std::int64_t, double, std::string>;
    /// The content itself, for readers that know every type; the alternatives stand in the order
    /// of the type codes.
    const Data& data() const noexcept { return fData; }

private:
    [[noreturn]] void throwNoElement(int index) const;
    [[noreturn]] void throwNoString() const;

    Data fData;
};
