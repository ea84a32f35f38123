// Every value of an answer, whatever records it is made of.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <list>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "tavroapi/record.h"

namespace misbehaving {

// Is shown each value, and may change it.
struct Visitor {
    virtual ~Visitor() = default;
    virtual void Text(std::string& text) = 0;
    virtual void Text(std::wstring& text) = 0;
    virtual void Number(std::uint32_t& number) = 0;
    virtual void Number(std::int32_t& number) = 0;
    virtual void Number(std::uint8_t& number) = 0;
    // A list or map with that many entries, before these are shown, in how many others it stands,
    // and what makes it have so many.
    virtual void List(std::size_t size, int depth,
                      const std::function<void(std::size_t)>& resize) = 0;
};

template <class T>
void Walk(T& value, Visitor& visitor, int depth = 0);

namespace detail {

// Puts a number behind each text, so that no two entries are the same.
struct Numbering : Visitor {
    explicit Numbering(std::size_t number) : end("-" + std::to_string(number)) {}
    void Text(std::string& text) override { text += end; }
    void Text(std::wstring& text) override { text.append(end.begin(), end.end()); }
    void Number(std::uint32_t&) override {}
    void Number(std::int32_t&) override {}
    void Number(std::uint8_t&) override {}
    void List(std::size_t, int, const std::function<void(std::size_t)>&) override {}

    std::string end;
};

// What is added is made of the first entry.
template <class Entry>
void Resize(std::list<Entry>& list, std::size_t size) {
    const Entry first = list.empty() ? Entry{} : list.front();
    list.resize(std::min(list.size(), size));
    while (list.size() < size) {
        Numbering numbering(list.size());
        Walk(list.emplace_back(first), numbering);
    }
}

template <class Value>
void Resize(std::map<std::int32_t, Value>& map, std::size_t size) {
    const Value first = map.empty() ? Value{} : map.begin()->second;
    while (map.size() > size) {
        map.erase(std::prev(map.end()));
    }
    for (std::int32_t key = 0; map.size() < size; ++key) {
        if (const auto [entry, isNew] = map.try_emplace(key, first); isNew) {
            Numbering numbering(static_cast<std::size_t>(key));
            Walk(entry->second, numbering);
        }
    }
}

template <class T>
concept Resizable = requires(T& value) {
    Resize(value, std::size_t{});
};

template <class Key, class Value>
Value& ValueOf(std::pair<const Key, Value>& entry) {
    return entry.second;
}

template <class Value>
Value& ValueOf(Value& entry) {
    return entry;
}

}  // namespace detail

// Shows each value of a record, of a list, or of whatever may stand in one.
template <class T>
void Walk(T& value, Visitor& visitor, int depth) {
    if constexpr (std::same_as<T, std::string> || std::same_as<T, std::wstring>) {
        visitor.Text(value);
    } else if constexpr (std::integral<T>) {
        visitor.Number(value);
    } else if constexpr (tavroapi::DescribedRecord<T>) {
        tavroapi::ForEachField(value, [&](std::size_t, std::string_view, auto& member) {
            Walk(member, visitor, depth);
        });
    } else {
        if constexpr (detail::Resizable<T>) {
            visitor.List(value.size(), depth,
                         [&](std::size_t size) { detail::Resize(value, size); });
            ++depth;
        }
        for (auto& entry : value) {
            Walk(detail::ValueOf(entry), visitor, depth);
        }
    }
}

}  // namespace misbehaving
