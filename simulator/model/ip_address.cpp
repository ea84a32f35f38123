#include "simulator/model/ip_address.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace tavrosim {
namespace {

constexpr std::size_t OctetsOfIPv4 = 4;
constexpr std::size_t GroupsOfIPv6 = 8;

// The number that `text` is as a whole, in at most `digits` digits.
std::optional<std::uint32_t> WholeNumber(std::string_view text, std::size_t digits, int base) {
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, base);
    const bool isNumber = error == std::errc() && stop == end && text.size() <= digits;
    return isNumber ? std::optional(number) : std::nullopt;
}

// The part in front of the separator, which is taken away with it; all that is left without one.
std::string_view TakePart(std::string_view& rest, char separator) {
    const std::size_t length = rest.find(separator);
    const std::string_view part = rest.substr(0, length);
    rest.remove_prefix(length == std::string_view::npos ? rest.size() : length + 1);
    return part;
}

std::optional<std::array<std::uint8_t, OctetsOfIPv4>> IPv4Octets(std::string_view text) {
    if (std::ranges::count(text, '.') != OctetsOfIPv4 - 1) {
        return std::nullopt;
    }
    std::array<std::uint8_t, OctetsOfIPv4> octets{};
    for (std::uint8_t& octet : octets) {
        const auto number = WholeNumber(TakePart(text, '.'), 3, 10);
        if (!number || *number > 0xFF) {
            return std::nullopt;
        }
        octet = static_cast<std::uint8_t>(*number);
    }
    return octets;
}

using Groups = std::vector<std::uint16_t>;

// Appends the groups of one side of a "::", or of an address without one. Only the address's end
// may be written as an IPv4 address.
bool AppendGroups(std::string_view text, bool isEnd, Groups& groups) {
    if (text.empty()) {
        return true;
    }
    if (text.back() == ':') {
        return false;
    }
    while (!text.empty()) {
        const std::string_view part = TakePart(text, ':');
        if (const auto group = WholeNumber(part, 4, 16)) {
            groups.push_back(static_cast<std::uint16_t>(*group));
        } else if (const auto octets = IPv4Octets(part); octets && isEnd && text.empty()) {
            const auto& o = *octets;
            groups.push_back(static_cast<std::uint16_t>(o[0] << 8U | o[1]));
            groups.push_back(static_cast<std::uint16_t>(o[2] << 8U | o[3]));
        } else {
            return false;
        }
        if (groups.size() > GroupsOfIPv6) {
            return false;
        }
    }
    return true;
}

std::optional<Groups> IPv6Groups(std::string_view text) {
    constexpr std::string_view Gap = "::";
    const std::size_t gap = text.find(Gap);
    Groups groups;
    if (gap == std::string_view::npos) {
        const bool isWhole = AppendGroups(text, true, groups) && groups.size() == GroupsOfIPv6;
        return isWhole ? std::optional(groups) : std::nullopt;
    }
    Groups tail;
    if (!AppendGroups(text.substr(0, gap), false, groups) ||
        !AppendGroups(text.substr(gap + Gap.size()), true, tail) ||
        groups.size() + tail.size() >= GroupsOfIPv6) {
        return std::nullopt;
    }
    groups.resize(GroupsOfIPv6 - tail.size());
    groups.insert(groups.end(), tail.begin(), tail.end());
    return groups;
}

bool IsZone(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               c == '.' || c == '-' || c == '_';
    });
}

}  // namespace

std::optional<IpAddress> IpAddressFrom(std::string_view text) {
    IpAddress address;
    if (const auto octets = IPv4Octets(text)) {
        std::ranges::copy(*octets, address.octets.begin());
        return address;
    }
    const std::size_t percent = text.find('%');
    const auto groups = IPv6Groups(text.substr(0, percent));
    if (!groups) {
        return std::nullopt;
    }
    if (percent != std::string_view::npos) {
        const bool isLinkLocal = (groups->front() & 0xFFC0U) == 0xFE80U;
        if (!isLinkLocal || !IsZone(text.substr(percent + 1))) {
            return std::nullopt;
        }
        address.zone = text.substr(percent + 1);
    }
    address.isIPv6 = true;
    for (std::size_t group = 0; group < GroupsOfIPv6; ++group) {
        address.octets[2 * group] = static_cast<std::uint8_t>((*groups)[group] >> 8U);
        address.octets[2 * group + 1] = static_cast<std::uint8_t>((*groups)[group] & 0xFFU);
    }
    return address;
}

}  // namespace tavrosim
