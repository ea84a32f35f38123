#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavrosim {

// An IPv4 or IPv6 address. Texts that write one address in different ways give equal values.
struct IpAddress {
    bool isIPv6 = false;
    std::array<std::uint8_t, 16> octets{};  // of an IPv4 address the first four
    std::string zone;                       // of a link-local address: the interface, as written

    bool operator==(const IpAddress&) const = default;
};

// The address that the text writes: IPv4 in four decimal numbers, IPv6 in groups with at most one
// "::", its last two perhaps as an IPv4 address, a link-local one perhaps with its zone behind "%".
// None for every other text.
std::optional<IpAddress> IpAddressFrom(std::string_view text);

// An address to compare others with, which is read once. Texts that are no addresses are the same
// when they are equal.
class AddressMatch {
  public:
    explicit AddressMatch(std::string_view text) : text_(text), address_(IpAddressFrom(text)) {}

    bool operator()(std::string_view other) const {
        return other == text_ || (address_ && IpAddressFrom(other) == address_);
    }

  private:
    std::string text_;
    std::optional<IpAddress> address_;
};

}  // namespace tavrosim
