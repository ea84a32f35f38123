#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "simulator/host/member.h"
#include "simulator/json.h"
#include "simulator/text.h"

/// Structs of the host file as JSON objects with their keys, both ways.
namespace tavrosim {

namespace detail {

template <class T>
inline constexpr bool IsOptional = false;
template <class T>
inline constexpr bool IsOptional<std::optional<T>> = true;

template <class T>
inline constexpr bool IsVector = false;
template <class T>
inline constexpr bool IsVector<std::vector<T>> = true;

template <class T>
inline constexpr bool IsTextMap = false;
template <class Value>
inline constexpr bool IsTextMap<std::map<std::string, Value>> = true;

}  // namespace detail

template <class T>
Json HostValueToJson(const T& value) {
    if constexpr (std::same_as<T, std::string>) {
        return Utf8FromBytes(value);
    } else if constexpr (std::same_as<T, bool>) {
        return Json(value);
    } else if constexpr (std::integral<T>) {
        return Json(+value);
    } else if constexpr (detail::IsOptional<T>) {
        return HostValueToJson(*value);
    } else if constexpr (HostStruct<T>) {
        Json object = Json::object();
        const auto add = [&](const auto& member) {
            const auto& part = value.*member.member;
            if constexpr (detail::IsOptional<std::remove_cvref_t<decltype(part)>>) {
                if (!part.has_value()) {
                    return;
                }
            }
            object[std::string(member.key)] = HostValueToJson(part);
        };
        std::apply([&](const auto&... member) { (add(member), ...); }, T::Members());
        return object;
    } else if constexpr (detail::IsTextMap<T>) {
        Json object = Json::object();
        for (const auto& [key, part] : value) {
            object[Utf8FromBytes(key)] = HostValueToJson(part);
        }
        return object;
    } else {
        Json array = Json::array();
        for (const auto& element : value) {
            array.push_back(HostValueToJson(element));
        }
        return array;
    }
}

/// Throws ShapeError naming the place for a missing, an unknown or a wrongly shaped member.
template <class T>
void HostValueFromJson(const Json& json, T& value, const Place& place) {
    if constexpr (std::same_as<T, std::string>) {
        value = BytesFromUtf8(TextAt(json, place));
    } else if constexpr (std::same_as<T, bool>) {
        value = TruthAt(json, place);
    } else if constexpr (std::integral<T>) {
        using Limits = std::numeric_limits<T>;
        constexpr auto Highest = static_cast<std::int64_t>(std::min(
            static_cast<std::uint64_t>(Limits::max()), static_cast<std::uint64_t>(INT64_MAX)));
        value = static_cast<T>(
            NumberAt(json, static_cast<std::int64_t>(Limits::min()), Highest, place));
    } else if constexpr (detail::IsOptional<T>) {
        HostValueFromJson(json, value.emplace(), place);
    } else if constexpr (HostStruct<T>) {
        WantObject(json, place);
        const auto read = [&](const auto& member) {
            const auto found = json.find(std::string(member.key));
            if (found != json.end()) {
                HostValueFromJson(*found, value.*member.member, Place(place, member.key));
            } else if (member.presence == Presence::Required) {
                throw ShapeError(place, "\"" + std::string(member.key) + "\" is missing");
            }
        };
        std::apply([&](const auto&... member) { (read(member), ...); }, T::Members());
        for (const auto& item : json.items()) {
            const auto isItem = [&item](const auto& member) { return member.key == item.key(); };
            if (!std::apply([&](const auto&... member) { return (isItem(member) || ...); },
                            T::Members())) {
                throw ShapeError(Place(place, item.key()), "unknown here");
            }
        }
    } else if constexpr (detail::IsTextMap<T>) {
        WantObject(json, place);
        value.clear();
        for (const auto& item : json.items()) {
            HostValueFromJson(item.value(), value[BytesFromUtf8(item.key())],
                              Place(place, item.key()));
        }
    } else if constexpr (detail::IsVector<T>) {
        value.clear();
        value.resize(SizeAt(json, std::numeric_limits<std::size_t>::max(), place));
        for (std::size_t i = 0; i < value.size(); ++i) {
            HostValueFromJson(json[i], value[i], Place(place, i));
        }
    } else {
        const std::size_t given = SizeAt(json, std::tuple_size_v<T>, place);
        for (std::size_t i = 0; i < given; ++i) {
            HostValueFromJson(json[i], value[i], Place(place, i));
        }
    }
}

}  // namespace tavrosim
