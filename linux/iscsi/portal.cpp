#include "linux/iscsi/portal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>

namespace tavrolinux {
namespace {

// The number of a group as targets tell it; empty where it is none.
std::string GroupFrom(std::string_view text) {
    std::uint16_t group = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, group);
    return error == std::errc() && stop == end ? std::to_string(group) : std::string();
}

}  // namespace

std::optional<IpAddress> PlainAddressFrom(std::string_view text) {
    constexpr std::array<std::uint8_t, 12> Mapped{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};
    auto address = IpAddressFrom(text);
    if (address && address->family == Family::IPv6 &&
        std::equal(Mapped.begin(), Mapped.end(), address->octets.begin())) {
        IpAddress plain{Family::IPv4, {}};
        std::copy(address->octets.begin() + Mapped.size(), address->octets.end(),
                  plain.octets.begin());
        return plain;
    }
    return address;
}

bool IsNoPlace(std::string_view address) {
    const auto plain = PlainAddressFrom(address);
    return plain && plain->IsZero();
}

bool AreSame(const Portal& one, const Portal& other) {
    const auto address = PlainAddressFrom(one.address);
    return one.port == other.port && (one.address == other.address ||
                                      (address && address == PlainAddressFrom(other.address)));
}

std::optional<std::uint16_t> PortFrom(std::string_view text) {
    std::uint16_t port = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, port);
    const bool isPort = error == std::errc() && stop == end && port != 0;
    return isPort ? std::optional(port) : std::nullopt;
}

std::string TextOf(const Portal& portal) {
    const bool isIPv6 = portal.address.find(':') != std::string::npos;
    return (isIPv6 ? '[' + portal.address + ']' : portal.address) + ':' +
           std::to_string(portal.port);
}

std::optional<AnnouncedPortal> ParseAnnouncedPortal(std::string_view text) {
    const auto isPrintable = [](char character) { return character > ' ' && character < 0x7F; };
    if (!std::ranges::all_of(text, isPrintable)) {
        return std::nullopt;
    }
    AnnouncedPortal announced;
    if (const auto comma = text.rfind(','); comma != std::string_view::npos) {
        announced.group = GroupFrom(text.substr(comma + 1));
        text = text.substr(0, comma);
    }
    if (text.starts_with('[')) {
        const auto end = text.find(']');
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        announced.portal.address = text.substr(1, end - 1);
        text.remove_prefix(end + 1);
    } else {
        const auto colon = text.find(':');
        announced.portal.address = text.substr(0, colon);
        text.remove_prefix(std::min(colon, text.size()));
    }
    if (!text.empty()) {
        const auto port = text.front() == ':' ? PortFrom(text.substr(1)) : std::nullopt;
        if (!port) {
            return std::nullopt;
        }
        announced.portal.port = *port;
    }
    return announced.portal.address.empty() ? std::nullopt : std::optional(announced);
}

}  // namespace tavrolinux
