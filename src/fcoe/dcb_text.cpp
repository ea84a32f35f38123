#include "fcoe/dcb_text.h"

#include <algorithm>

namespace tavro {

namespace {

constexpr std::size_t MaximumBandwidths = 50;

// A ':' at a smaller position has no separator before its key.
constexpr std::size_t FirstSeparatedColon = 3;

}  // namespace

std::vector<std::string_view> ItemsOf(std::string_view list) {
    std::vector<std::string_view> items;
    if (list.empty()) {
        return items;
    }
    std::size_t comma = 0;
    while ((comma = list.find(',')) != std::string_view::npos) {
        items.push_back(list.substr(0, comma));
        list.remove_prefix(comma + 1);
    }
    items.push_back(list);
    return items;
}

MapItem CutItem(std::string_view item) {
    const std::size_t colon = item.find(':');
    if (colon == std::string_view::npos) {
        return {item, {}};
    }
    return {item.substr(0, colon), item.substr(colon + 1)};
}

std::string JoinedBandwidths(std::string_view list) {
    std::vector<std::string_view> items = ItemsOf(list);
    items.resize(std::min(items.size(), MaximumBandwidths));
    std::string joined;
    for (const std::string_view item : items) {
        const bool hasKey = item.find(':') != std::string_view::npos;
        const std::string_view bandwidth = hasKey ? CutItem(item).values : item;
        if (bandwidth.empty()) {
            continue;
        }
        if (!joined.empty()) {
            joined += ',';
        }
        joined += bandwidth;
    }
    return joined;
}

std::string PriorityListFromAnswer(std::string answer) {
    std::ranges::replace(answer, ',', ' ');
    return answer;
}

std::string PriorityMapFromAnswer(std::string answer) {
    std::ranges::replace(answer, ',', ' ');
    for (std::size_t i = FirstSeparatedColon; i < answer.size(); ++i) {
        if (answer[i] == ':') {
            answer[i - 2] = ',';
        }
    }
    return answer;
}

}  // namespace tavro
