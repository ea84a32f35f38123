#include "linux/iscsi/ping.h"

#include <netinet/icmp6.h>
#include <netinet/in.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <optional>
#include <system_error>

#include "linux/iscsi/failure.h"
#include "linux/iscsi/icmp.h"
#include "linux/iscsi/local_address.h"
#include "linux/iscsi/rows.h"
#include "linux/iscsi/socket_address.h"
#include "linux/iscsi/wait.h"
#include "linux/system/descriptor.h"
#include "linux/system/failure.h"
#include "tavroapi/codes.h"

namespace tavrolinux {
namespace {

constexpr std::size_t LongestPacket = 65536;

// A socket for ICMP. Of a raw one this process gets every reply to the host, those of IPv4 with
// their header; of the other kind, which the host may leave to some groups of users, only its own.
struct PingSocket {
    Descriptor descriptor;
    bool isRaw = false;
};

PingSocket OpenPingSocket(const PingPlan& plan) {
    const bool isIPv4 = plan.address.family == Family::IPv4;
    const int domain = isIPv4 ? AF_INET : AF_INET6;
    const int protocol = isIPv4 ? static_cast<int>(IPPROTO_ICMP) : static_cast<int>(IPPROTO_ICMPV6);
    const std::string action = "pinging from " + plan.interface;
    PingSocket made{Descriptor(socket(domain, SOCK_DGRAM | SOCK_CLOEXEC, protocol)), false};
    if (!made.descriptor) {
        PingSocket raw{Descriptor(socket(domain, SOCK_RAW | SOCK_CLOEXEC, protocol)), true};
        if (!raw.descriptor) {
            throw SystemFailure(errno, action, RawSocketRight);
        }
        return raw;
    }
    return made;
}

void Bind(const PingSocket& ping, const PingPlan& plan) {
    const std::string address = TextOf(plan.address);
    if (!IsAddressOfThisHost(address) &&
        setsockopt(ping.descriptor.Get(), SOL_SOCKET, SO_BINDTODEVICE, plan.interface.data(),
                   static_cast<socklen_t>(plan.interface.size())) != 0) {
        throw SystemFailure(errno, "pinging from " + plan.interface, RawSocketRight);
    }
    // Only replies are wanted; a raw socket would get all that arrives meanwhile.
    if (ping.isRaw && plan.address.family == Family::IPv6) {
        icmp6_filter filter{};
        ICMP6_FILTER_SETBLOCKALL(&filter);
        ICMP6_FILTER_SETPASS(ICMP6_ECHO_REPLY, &filter);
        setsockopt(ping.descriptor.Get(), IPPROTO_ICMPV6, ICMP6_FILTER, &filter, sizeof filter);
    }
}

bool IsFrom(const sockaddr_storage& sender, const PingPlan& plan) {
    const SocketAddress wanted = SocketAddressOf(plan.address);
    if (sender.ss_family != wanted.storage.ss_family) {
        return false;
    }
    if (plan.address.family == Family::IPv4) {
        sockaddr_in from{};
        std::memcpy(&from, &sender, sizeof from);
        return std::memcmp(&from.sin_addr, plan.address.octets.data(), sizeof from.sin_addr) == 0;
    }
    sockaddr_in6 from{};
    std::memcpy(&from, &sender, sizeof from);
    return std::memcmp(&from.sin6_addr, plan.address.octets.data(), sizeof from.sin6_addr) == 0;
}

// Waits for the reply to the request with that mark.
bool HasReply(const PingSocket& ping, const PingPlan& plan, EchoMark mark,
              std::span<const std::uint8_t> request) {
    const auto deadline = WaitClock::now() + plan.timeout;
    std::vector<std::uint8_t> bytes(LongestPacket);
    while (const int left = MillisecondsUntil(deadline)) {
        pollfd waiting{ping.descriptor.Get(), POLLIN, 0};
        if (poll(&waiting, 1, left) <= 0) {
            continue;
        }
        sockaddr_storage sender{};
        socklen_t size = sizeof sender;
        const ssize_t got = recvfrom(ping.descriptor.Get(), bytes.data(), bytes.size(),
                                     MSG_DONTWAIT, reinterpret_cast<sockaddr*>(&sender), &size);
        if (got <= 0 || !IsFrom(sender, plan)) {
            continue;
        }
        std::span<const std::uint8_t> packet(bytes.data(), static_cast<std::size_t>(got));
        const bool hasHeader = ping.isRaw && plan.address.family == Family::IPv4;
        if (hasHeader) {
            packet = WithoutIPv4Header(packet);
        }
        const auto reply = EchoReplyTo(plan.address.family, packet);
        // The kernel gives packets of a socket that is not raw an identifier of its own.
        if (reply && reply->sequence == mark.sequence &&
            (!ping.isRaw || reply->identifier == mark.identifier) && BringsBack(packet, request)) {
            return true;
        }
    }
    return false;
}

// The number of an option, at most the highest that counts. Throws IscsiFailure where it is none.
std::uint32_t OptionFrom(const char* option, const std::string& text, std::uint32_t least,
                         std::uint32_t most) {
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (stop != end || error != std::errc() || number < least) {
        throw IscsiFailure(Refused(Status::InvalidPingOption,
                                   L"The value of a ping option is not usable.",
                                   L"Use a whole number within the range.",
                                   WideFromUtf8(option) + L' ' + tavrolib::Quoted(text)));
    }
    return std::min(number, most);
}

PingPlan PlanOf(const Place& at, const tavroapi::IscsiPingRequest& ping) {
    constexpr std::uint32_t MostPackets = 1000;
    constexpr std::uint32_t LargestPing = 65507;
    constexpr std::uint32_t LongestWait = 60000;
    const auto address = IpAddressFrom(ping.address);
    if (!address) {
        throw IscsiFailure(tavrolib::NotAnAddress(Status::InvalidPingAddress, ping.address));
    }
    return {at.interface.name, *address, OptionFrom("count", ping.count, 1, MostPackets),
            OptionFrom("packet size", ping.packetSize, 0, LargestPing),
            std::chrono::milliseconds(OptionFrom("timeout", ping.timeout, 1, LongestWait))};
}

// Tells how many of the packets got a reply.
Outcome Count(const PingPlan& plan, const std::string& address, tavroapi::IscsiPingResult& result) {
    const PingOutcome outcome = Ping(plan);
    result.libraryText = std::to_string(plan.count);
    result.received = std::to_string(outcome.replies);
    if (outcome.replies == plan.count) {
        return Done();
    }
    std::wstring details = WideFromUtf8(address) + L": " + std::to_wstring(outcome.replies) +
                           L" of " + std::to_wstring(plan.count) + L" replies";
    if (!outcome.reason.empty()) {
        details += L", " + WideFromUtf8(outcome.reason);
    }
    return Refused(tavroapi::IscsiPingRepliesMissing, L"Some packets got no reply.",
                   L"Check the address, the cabling and the port's TCP/IP settings.", details);
}

}  // namespace

PingOutcome Ping(const PingPlan& plan) {
    const PingSocket ping = OpenPingSocket(plan);
    Bind(ping, plan);
    const SocketAddress address = SocketAddressOf(plan.address);
    PingOutcome outcome;
    EchoMark mark{static_cast<std::uint16_t>(getpid()), 0};
    for (std::uint32_t sent = 0; sent < plan.count; ++sent) {
        ++mark.sequence;
        const auto packet = EchoRequest(plan.address.family, mark, plan.packetSize);
        if (sendto(ping.descriptor.Get(), packet.data(), packet.size(), 0, address.Get(),
                   address.size) < 0) {
            outcome.reason = std::generic_category().message(errno);
        } else if (HasReply(ping, plan, mark, packet)) {
            ++outcome.replies;
        }
    }
    return outcome;
}

Outcome PingFromIscsiPort(const Place& at, const tavroapi::IscsiPingRequest& ping,
                          tavroapi::IscsiPingResult& result) {
    return WithRefusals([&] { return Count(PlanOf(at, ping), ping.address, result); });
}

}  // namespace tavrolinux
