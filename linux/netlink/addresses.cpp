#include "linux/netlink/addresses.h"

#include <arpa/inet.h>
#include <linux/if_addr.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <span>

#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

constexpr std::size_t OctetsOfIPv4 = 4;
constexpr std::uint32_t BitsOfIPv4 = 32;

Message AddressRequest(int type, int flags, const Link& link, Family family,
                       std::uint32_t prefixLength = 0) {
    Message message(type, flags);
    ifaddrmsg header{};
    header.ifa_family = SystemFamily(family);
    header.ifa_index = static_cast<std::uint32_t>(link.index);
    header.ifa_prefixlen = static_cast<std::uint8_t>(prefixLength);
    message.Append(header);
    return message;
}

// The system's states of an address, which follow from others and are none of what makes it.
constexpr std::uint32_t StateFlags =
    IFA_F_SECONDARY | IFA_F_DADFAILED | IFA_F_DEPRECATED | IFA_F_TENTATIVE | IFA_F_PERMANENT;

std::span<const std::uint8_t> BytesIn(const nlmsghdr& message) {
    return {static_cast<const std::uint8_t*>(nlmsg_data(&message)),
            static_cast<std::size_t>(nlmsg_datalen(&message))};
}

// What was told of the address, as a request; with that lifetime where one is given.
Message RequestFor(int type, int flags, const AssignedAddress& address,
                   const ifa_cacheinfo* lifetime = nullptr) {
    Message message(type, flags);
    ifaddrmsg header{};
    std::memcpy(&header, address.told.data(), std::min(sizeof header, address.told.size()));
    header.ifa_flags &= static_cast<std::uint8_t>(~StateFlags);
    message.Append(header);
    const auto attributes =
        std::span(address.told).subspan(std::min(sizeof header, address.told.size()));
    ForEachAttribute(attributes, [&](int attributeType, const nlattr& attribute) {
        if (attributeType == IFA_FLAGS) {
            message.PutNumber32(IFA_FLAGS,
                                static_cast<std::uint32_t>(NumberOf(attribute)) & ~StateFlags);
        } else if (attributeType != IFA_CACHEINFO || lifetime == nullptr) {
            message.Put(attributeType, BytesOf(attribute));
        }
    });
    if (lifetime != nullptr) {
        message.Put(IFA_CACHEINFO,
                    {reinterpret_cast<const std::uint8_t*>(lifetime), sizeof *lifetime});
    }
    return message;
}

bool IsOver(const AssignedAddress& address) {
    bool isOver = false;
    ForEachAttribute(
        std::span(address.told).subspan(std::min(sizeof(ifaddrmsg), address.told.size())),
        [&isOver](int type, const nlattr& attribute) {
            ifa_cacheinfo lifetime{};
            const auto bytes = BytesOf(attribute);
            if (type == IFA_CACHEINFO && bytes.size() >= sizeof lifetime) {
                std::memcpy(&lifetime, bytes.data(), sizeof lifetime);
                isOver = lifetime.ifa_valid == 0;
            }
        });
    return isOver;
}

std::string ActionOn(const char* verb, const AssignedAddress& address, const char* preposition,
                     const Link& link) {
    return std::string(verb) + " the address " + TextOf(address.address) + ' ' + preposition + ' ' +
           link.name;
}

}  // namespace

std::uint8_t SystemFamily(Family family) {
    return family == Family::IPv4 ? AF_INET : AF_INET6;
}

std::span<const std::uint8_t> OctetsOf(const IpAddress& address) {
    return {address.octets.data(),
            address.family == Family::IPv4 ? OctetsOfIPv4 : address.octets.size()};
}

IpAddress AddressFrom(Family family, const nlattr& attribute) {
    IpAddress address{family, {}};
    const auto bytes = BytesOf(attribute);
    std::copy_n(bytes.begin(), std::min(bytes.size(), address.octets.size()),
                address.octets.begin());
    return address;
}

bool IpAddress::IsZero() const {
    return std::ranges::all_of(octets, [](std::uint8_t octet) { return octet == 0; });
}

bool IpAddress::IsForHost() const {
    const std::uint8_t first = octets[0];
    if (family == Family::IPv4) {
        constexpr std::uint8_t Loopback = 127;
        constexpr std::uint8_t FirstMulticast = 224;  // reserved ones follow
        return first != 0 && first != Loopback && first < FirstMulticast;
    }
    constexpr std::uint8_t Multicast = 0xFF;
    constexpr std::uint8_t LinkLocal = 0xFE;
    const bool isLinkLocal = first == LinkLocal && (octets[1] & 0xC0U) == 0x80U;
    IpAddress loopback{Family::IPv6, {}};
    loopback.octets.back() = 1;
    const IpAddress ofIPv4{Family::IPv6, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF}};
    constexpr std::uint32_t BitsBeforeIPv4 = 96;
    return first != Multicast && !isLinkLocal && !IsZero() && *this != loopback &&
           !AreInOneNetwork(*this, ofIPv4, BitsBeforeIPv4);
}

bool IpAddress::IsForAll(std::uint32_t prefixLength) const {
    constexpr std::uint32_t LongestOfNetwork = 30;  // longer ones have only hosts
    if (family != Family::IPv4 || prefixLength > LongestOfNetwork) {
        return false;
    }
    std::uint32_t ones = 0;
    for (std::uint32_t bit = prefixLength; bit < BitsOfIPv4; ++bit) {
        ones += (octets.at(bit / 8) & (0x80U >> (bit % 8))) != 0 ? 1U : 0U;
    }
    return ones == 0 || ones == BitsOfIPv4 - prefixLength;
}

bool AreInOneNetwork(const IpAddress& a, const IpAddress& b, std::uint32_t prefixLength) {
    for (std::uint32_t bit = 0; bit < prefixLength; ++bit) {
        const unsigned difference =
            static_cast<unsigned>(a.octets.at(bit / 8) ^ b.octets.at(bit / 8));
        if ((difference & (0x80U >> (bit % 8))) != 0) {
            return false;
        }
    }
    return true;
}

std::optional<IpAddress> IpAddressFrom(std::string_view text) {
    const std::string zeroEnded(text);
    for (const Family family : {Family::IPv4, Family::IPv6}) {
        IpAddress address{family, {}};
        if (inet_pton(SystemFamily(family), zeroEnded.c_str(), address.octets.data()) == 1) {
            return address;
        }
    }
    return std::nullopt;
}

std::string TextOf(const IpAddress& address) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    inet_ntop(SystemFamily(address.family), address.octets.data(), text.data(), text.size());
    return text.data();
}

std::string MaskText(std::uint32_t prefixLength) {
    IpAddress mask;
    for (std::uint32_t bit = 0; bit < std::min(prefixLength, BitsOfIPv4); ++bit) {
        mask.octets.at(bit / 8) |= static_cast<std::uint8_t>(0x80U >> (bit % 8));
    }
    return TextOf(mask);
}

std::optional<std::uint32_t> PrefixLengthOf(const IpAddress& mask) {
    if (mask.family != Family::IPv4) {
        return std::nullopt;
    }
    std::uint32_t bits = 0;
    for (const std::uint8_t octet : OctetsOf(mask)) {
        bits = (bits << 8U) | octet;
    }
    const auto length = static_cast<std::uint32_t>(std::countl_one(bits));
    return length == static_cast<std::uint32_t>(std::popcount(bits)) ? std::optional(length)
                                                                     : std::nullopt;
}

std::vector<AssignedAddress> ReadAddresses(Socket& route, const Link& link, Family family) {
    std::vector<AssignedAddress> addresses;
    const auto take = [&](const nlmsghdr& message) {
        const auto header = HeaderOf<ifaddrmsg>(message);
        if (header.ifa_index != static_cast<std::uint32_t>(link.index) ||
            header.ifa_family != SystemFamily(family)) {
            return;
        }
        AssignedAddress assigned;
        assigned.prefixLength = header.ifa_prefixlen;
        assigned.scope = header.ifa_scope;
        std::uint32_t flags = header.ifa_flags;
        std::optional<IpAddress> own;
        ForEachAttribute(AttributesOf(message, sizeof header),
                         [&](int type, const nlattr& attribute) {
                             if (type == IFA_LOCAL) {
                                 own = AddressFrom(family, attribute);
                             } else if (type == IFA_ADDRESS) {
                                 assigned.address = AddressFrom(family, attribute);
                             } else if (type == IFA_FLAGS) {
                                 flags = static_cast<std::uint32_t>(NumberOf(attribute));
                             } else if (type == IFA_RT_PRIORITY) {
                                 assigned.metric = static_cast<std::uint32_t>(NumberOf(attribute));
                             }
                         });
        assigned.peer = assigned.address;
        assigned.address = own.value_or(assigned.address);
        assigned.isTentative = (flags & IFA_F_TENTATIVE) != 0;
        assigned.isTaken = (flags & IFA_F_DADFAILED) != 0;
        assigned.makesRoute = (flags & IFA_F_NOPREFIXROUTE) == 0;
        const auto told = BytesIn(message);
        assigned.told.assign(told.begin(), told.end());
        assigned.isPermanent = (flags & IFA_F_PERMANENT) != 0;
        // One bit of two meanings.
        static_assert(IFA_F_SECONDARY == IFA_F_TEMPORARY);
        const bool isMarked = (flags & IFA_F_SECONDARY) != 0;
        assigned.isSecondary = isMarked && family == Family::IPv4;
        assigned.isTemporary = isMarked && family == Family::IPv6;
        addresses.push_back(assigned);
    };
    route.Request(AddressRequest(RTM_GETADDR, NLM_F_DUMP, link, family),
                  "reading the addresses of " + link.name, take, [&] { addresses.clear(); });
    return addresses;
}

AssignedAddress NewAddress(const Link& link, const IpAddress& address, std::uint32_t prefixLength,
                           const std::optional<AssignedAddress>& replaced) {
    Message message = AddressRequest(RTM_NEWADDR, 0, link, address.family, prefixLength);
    message.Put(IFA_LOCAL, OctetsOf(address));
    message.Put(IFA_ADDRESS, OctetsOf(address));
    AssignedAddress made;
    made.address = address;
    made.peer = address;
    made.prefixLength = prefixLength;
    if (replaced && replaced->metric != 0) {
        made.metric = replaced->metric;
        message.PutNumber32(IFA_RT_PRIORITY, made.metric);
    }
    if (replaced && !replaced->makesRoute && replaced->prefixLength == prefixLength &&
        AreInOneNetwork(replaced->peer, address, prefixLength)) {
        made.makesRoute = false;
        message.PutNumber32(IFA_FLAGS, IFA_F_NOPREFIXROUTE);
    }
    const auto told = BytesIn(*nlmsg_hdr(message.Get()));
    made.told.assign(told.begin(), told.end());
    return made;
}

void AddAddress(Socket& route, const Link& link, const AssignedAddress& address) {
    if (!IsOver(address)) {
        route.Request(RequestFor(RTM_NEWADDR, NLM_F_CREATE | NLM_F_EXCL, address),
                      ActionOn("adding", address, "to", link));
    }
}

void RemoveAddress(Socket& route, const Link& link, const AssignedAddress& address) {
    route.Request(RequestFor(RTM_DELADDR, 0, address), ActionOn("taking", address, "from", link));
}

void RestoreLifetime(Socket& route, const Link& link, const AssignedAddress& former) {
    if (!IsOver(former)) {
        route.Request(RequestFor(RTM_NEWADDR, NLM_F_REPLACE, former),
                      ActionOn("limiting", former, "of", link));
    }
}

void MakePermanent(Socket& route, const Link& link, const AssignedAddress& address) {
    constexpr std::uint32_t Forever = 0xFFFFFFFF;
    const ifa_cacheinfo lifetime{Forever, Forever, 0, 0};
    route.Request(RequestFor(RTM_NEWADDR, NLM_F_REPLACE, address, &lifetime),
                  ActionOn("keeping", address, "of", link));
}

}  // namespace tavrolinux
