#pragma once

#include <cstddef>
#include <set>
#include <utility>
#include <vector>

#include "library/json/findings.h"
#include "simulator/host/host.h"

namespace tavrohost {

// Calls `visit(element, its place)` for each element of the list at `place`.
template <class Element, class Visit>
void ForEachAt(const std::vector<Element>& list, const tavrolib::Place& place, const Visit& visit) {
    for (std::size_t index = 0; index < list.size(); ++index) {
        visit(list[index], tavrolib::Place(place, index));
    }
}

// Calls `visit(function, its place)` for each function of the host at `place`.
template <class Visit>
void ForEachFunction(const tavrosim::Host& host, const tavrolib::Place& place, const Visit& visit) {
    using tavrolib::Place;
    ForEachAt(host.adapters, Place(place, "adapters"), [&](const auto& adapter, const Place& at) {
        ForEachAt(adapter.ports, Place(at, "ports"), [&](const auto& port, const Place& portPlace) {
            ForEachAt(port.functions, Place(portPlace, "functions"), visit);
        });
    });
}

// Tells what comes a second time. What could not be read does not count.
template <class Key>
class OnceEach {
  public:
    OnceEach(const char* finding, tavrolib::Findings& findings)
        : finding_(finding), findings_(findings) {}

    // The finding is about `place` when `key` has been met before.
    void Meet(Key key, const tavrolib::Place& place) {
        if (findings_.IsReadable(place) && !met_.insert(std::move(key)).second) {
            findings_.Add(place, finding_);
        }
    }

  private:
    const char* finding_;
    tavrolib::Findings& findings_;
    std::set<Key> met_;
};

}  // namespace tavrohost
