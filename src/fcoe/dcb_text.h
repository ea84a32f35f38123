// The texts in which maps and lists of data center bridging travel.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavro {

// The pieces of a text between commas, empty ones included; an empty text has none.
std::vector<std::string_view> ItemsOf(std::string_view list);

// An item cut at its first ':'.
struct MapItem {
    std::string_view key;     // what stands before the ':'; all of an item without one
    std::string_view values;  // what stands after it
};
MapItem CutItem(std::string_view item);

// The bandwidths of a list of items "group:bandwidth", joined by commas. An item without ':' is a
// bandwidth itself. Only the first 50 items count, and of these only those with a bandwidth.
std::string JoinedBandwidths(std::string_view list);

// The priority list that an answer stands for: every comma becomes a blank.
std::string PriorityListFromAnswer(std::string answer);

// The priority map that an answer stands for: every comma becomes a blank; after that, what stands
// two places before a ':' becomes a comma, unless the ':' is among the first three characters.
std::string PriorityMapFromAnswer(std::string answer);

}  // namespace tavro
