#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <iterator>
#include <list>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "simulator/answers/element_keys.h"
#include "tavroapi/record.h"

// Merging what was captured with what a model makes of it: `before` is what the model told as it
// was captured, `now` what it tells now. Where both agree, what was captured stays, also what no
// model knows; everything else is told as it is now. `Keys` tells what elements of lists are known
// by (see element_keys.h).
namespace tavrosim {

// What is answered as a whole.
template <class T>
concept SingleValue =
    std::integral<T> || std::same_as<T, std::string> || std::same_as<T, std::wstring>;

template <class Key, class Value>
bool IsSame(const std::pair<const Key, Value>& one, const std::pair<const Key, Value>& other);

// Whether two records, or anything that stands in one, hold the same.
template <class T>
bool IsSame(const T& one, const T& other) {
    if constexpr (SingleValue<T>) {
        return one == other;
    } else if constexpr (tavroapi::DescribedRecord<T>) {
        return T::Fields([&](const auto&... field) {
            return (IsSame(one.*field.member, other.*field.member) && ...);
        });
    } else {
        return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                          [](const auto& element, const auto& counterpart) {
                              return IsSame(element, counterpart);
                          });
    }
}

// The same of an element of a map.
template <class Key, class Value>
bool IsSame(const std::pair<const Key, Value>& one, const std::pair<const Key, Value>& other) {
    return IsSame(one.first, other.first) && IsSame(one.second, other.second);
}

template <class Keys, class T>
T Merged(const T& captured, const T& before, const T& now);

namespace detail {

// The texts that tell the elements of lists apart: their names, with the details where a list has a
// name twice, and numbered where these are the same too.
template <class Keys, class Element>
class ElementNames {
  public:
    explicit ElementNames(const std::vector<const std::list<Element>*>& lists) {
        for (const std::list<Element>* const list : lists) {
            std::set<std::string> seen;
            for (const Element& element : *list) {
                std::string name = Keys::Of(element).name;
                if (!seen.insert(name).second) {
                    shared_.insert(std::move(name));
                }
            }
        }
    }

    // One for each element of the list, in its order.
    std::vector<std::string> Of(const std::list<Element>& list) const {
        std::map<std::string, std::size_t> counts;
        std::vector<std::string> names;
        for (const Element& element : list) {
            const ElementKey key = Keys::Of(element);
            std::string name = shared_.contains(key.name) ? Joined(key.name, key.detail) : key.name;
            const std::size_t count = counts[name]++;
            names.push_back(count == 0 ? std::move(name) : Joined(name, std::to_string(count)));
        }
        return names;
    }

    std::map<std::string, const Element*> ByName(const std::list<Element>& list) const {
        std::map<std::string, const Element*> elements;
        auto element = list.begin();
        for (std::string& name : Of(list)) {
            elements.emplace(std::move(name), &*element++);
        }
        return elements;
    }

  private:
    std::set<std::string> shared_;
};

template <class Elements>
auto Find(const Elements& elements, const std::string& name) -> typename Elements::mapped_type {
    const auto found = elements.find(name);
    return found == elements.end() ? nullptr : found->second;
}

// The order is that of `now`; elements that neither model knows stay behind the one that they stood
// behind. An element that the model told before without its having been captured stays untold until
// it changes.
template <class Keys, class Element>
std::list<Element> MergedLists(const std::list<Element>& captured, const std::list<Element>& before,
                               const std::list<Element>& now) {
    const ElementNames<Keys, Element> names({&captured, &before, &now});
    const auto capturedOnes = names.ByName(captured);
    const auto formerOnes = names.ByName(before);
    std::list<Element> merged;
    std::map<std::string, typename std::list<Element>::iterator> places;
    auto element = now.begin();
    for (const std::string& name : names.Of(now)) {
        const Element& current = *element++;
        const Element* const was = Find(capturedOnes, name);
        const Element* const former = Find(formerOnes, name);
        if (was == nullptr && former != nullptr && IsSame(*former, current)) {
            continue;
        }
        const bool isKnown = was != nullptr && former != nullptr;
        merged.push_back(isKnown ? Merged<Keys>(*was, *former, current) : current);
        places.emplace(name, std::prev(merged.end()));
    }
    auto place = merged.begin();
    auto was = captured.begin();
    for (const std::string& name : names.Of(captured)) {
        const Element& unknown = *was++;
        if (const auto found = places.find(name); found != places.end()) {
            place = std::next(found->second);
        } else if (!formerOnes.contains(name)) {
            place = std::next(merged.insert(place, unknown));
        }
    }
    return merged;
}

template <class Keys, class Key, class Value>
std::map<Key, Value> MergedMaps(const std::map<Key, Value>& captured,
                                const std::map<Key, Value>& before,
                                const std::map<Key, Value>& now) {
    std::map<Key, Value> merged;
    for (const auto& [key, value] : captured) {
        if (!before.contains(key)) {
            merged.emplace(key, value);
        }
    }
    for (const auto& [key, value] : now) {
        const auto was = captured.find(key);
        const auto former = before.find(key);
        if (former != before.end() && was != captured.end()) {
            merged.insert_or_assign(key, Merged<Keys>(was->second, former->second, value));
        } else if (former == before.end() || !IsSame(former->second, value)) {
            merged.insert_or_assign(key, value);
        }
    }
    return merged;
}

template <class Keys, class Element>
std::list<Element> MergedElements(const std::list<Element>& captured,
                                  const std::list<Element>& before, const std::list<Element>& now) {
    return MergedLists<Keys>(captured, before, now);
}

template <class Keys, class Key, class Value>
std::map<Key, Value> MergedElements(const std::map<Key, Value>& captured,
                                    const std::map<Key, Value>& before,
                                    const std::map<Key, Value>& now) {
    return MergedMaps<Keys>(captured, before, now);
}

template <class Keys, class Element, std::size_t Count>
std::array<Element, Count> MergedElements(const std::array<Element, Count>& captured,
                                          const std::array<Element, Count>& before,
                                          const std::array<Element, Count>& now) {
    std::array<Element, Count> merged;
    for (std::size_t i = 0; i < Count; ++i) {
        merged.at(i) = Merged<Keys>(captured.at(i), before.at(i), now.at(i));
    }
    return merged;
}

}  // namespace detail

// A value of a record, or a whole one. Records and fixed arrays are merged by position, maps and
// lists by their keys.
template <class Keys, class T>
T Merged(const T& captured, const T& before, const T& now) {
    if (IsSame(before, now)) {
        return captured;
    }
    if constexpr (tavroapi::DescribedRecord<T>) {
        T merged;
        T::Fields([&](const auto&... field) {
            ((merged.*field.member =
                  Merged<Keys>(captured.*field.member, before.*field.member, now.*field.member)),
             ...);
        });
        return merged;
    } else if constexpr (SingleValue<T>) {
        return now;
    } else {
        return detail::MergedElements<Keys>(captured, before, now);
    }
}

}  // namespace tavrosim
