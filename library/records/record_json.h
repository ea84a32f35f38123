#pragma once

#include <concepts>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <tuple>
#include <type_traits>

#include "library/json/json.h"
#include "library/records/secrets.h"
#include "library/text/text.h"
#include "tavroapi/record.h"

// Records as JSON by position: texts are strings and numbers are numbers (8-bit flags too);
// records, fixed arrays and lists are arrays, maps are arrays of [key, value]. The elements of a
// spread array lie flat in the array of their record.
namespace tavrolib {

inline constexpr const char* HiddenSecret = "***";

namespace detail {

template <class T>
inline constexpr bool IsMap = false;
template <class Key, class Value>
inline constexpr bool IsMap<std::map<Key, Value>> = true;

template <class T>
concept FixedArray = requires {
    std::tuple_size<T>::value;
}
&&!tavroapi::DescribedRecord<T>;

}  // namespace detail

// `value`, a record or anything that stands in one, as JSON.
template <class T>
Json ToJson(const T& value, Secrets secrets) {
    if constexpr (std::same_as<T, std::string>) {
        return Utf8FromBytes(value);
    } else if constexpr (std::same_as<T, std::wstring>) {
        return Utf8FromWide(value);
    } else if constexpr (std::integral<T>) {
        return Json(+value);
    } else if constexpr (tavroapi::DescribedRecord<T>) {
        Json fields = Json::array();
        tavroapi::ForEachField(
            value, [&](std::size_t position, std::string_view, const auto& member) {
                if (secrets == Secrets::Shown || !tavroapi::IsSecretPosition<T>(position)) {
                    fields.push_back(ToJson(member, secrets));
                } else {
                    fields.push_back(secrets == Secrets::Hidden ? HiddenSecret : "");
                }
            });
        return fields;
    } else if constexpr (detail::IsMap<T>) {
        Json entries = Json::array();
        for (const auto& [key, text] : value) {
            entries.push_back(Json::array({ToJson(key, secrets), ToJson(text, secrets)}));
        }
        return entries;
    } else {
        Json elements = Json::array();
        for (const auto& element : value) {
            elements.push_back(ToJson(element, secrets));
        }
        return elements;
    }
}

// Fills `value` from JSON of the shape that `ToJson` gives. Records and fixed arrays that get
// fewer elements than they have keep the rest as it is; lists and maps are replaced. Throws
// ShapeError where `json` has another shape or too many elements; `value` is then partly filled.
template <class T>
void FillFromJson(const Json& json, T& value, const Place& place) {
    if constexpr (std::same_as<T, std::string>) {
        value = BytesFromUtf8(TextAt(json, place));
    } else if constexpr (std::same_as<T, std::wstring>) {
        value = WideFromUtf8(TextAt(json, place));
    } else if constexpr (std::integral<T>) {
        static_assert(sizeof(T) <= sizeof(std::uint32_t));
        using Limits = std::numeric_limits<T>;
        value = static_cast<T>(NumberAt(json, Limits::min(), Limits::max(), place));
    } else if constexpr (tavroapi::DescribedRecord<T>) {
        const std::size_t given = SizeAt(json, tavroapi::FieldCount<T>(), place);
        tavroapi::ForEachField(value, [&](std::size_t position, std::string_view, auto& member) {
            if (position < given) {
                FillFromJson(json[position], member, Place(place, position));
            }
        });
    } else if constexpr (detail::IsMap<T>) {
        T entries;
        const std::size_t given = SizeAt(json, std::numeric_limits<std::size_t>::max(), place);
        for (std::size_t i = 0; i < given; ++i) {
            const Place entryPlace(place, i);
            if (SizeAt(json[i], 2, entryPlace) != 2) {
                throw ShapeError(entryPlace, "a key and a value are wanted");
            }
            typename T::key_type key{};
            FillFromJson(json[i][0], key, Place(entryPlace, std::size_t{0}));
            FillFromJson(json[i][1], entries[key], Place(entryPlace, std::size_t{1}));
        }
        value = std::move(entries);
    } else if constexpr (detail::FixedArray<T>) {
        const std::size_t given = SizeAt(json, std::tuple_size_v<T>, place);
        for (std::size_t i = 0; i < given; ++i) {
            FillFromJson(json[i], value[i], Place(place, i));
        }
    } else {
        T elements;
        const std::size_t given = SizeAt(json, std::numeric_limits<std::size_t>::max(), place);
        for (std::size_t i = 0; i < given; ++i) {
            FillFromJson(json[i], elements.emplace_back(), Place(place, i));
        }
        value = std::move(elements);
    }
}

}  // namespace tavrolib
