#include "linux/iscsi/icmp.h"

#include <netinet/icmp6.h>
#include <netinet/ip_icmp.h>

#include <algorithm>

namespace tavrolinux {
namespace {

constexpr std::size_t EchoHeaderSize = 8;
constexpr std::size_t ChecksumAt = 2;
constexpr std::size_t IdentifierAt = 4;
constexpr std::size_t SequenceAt = 6;

void PutNumber(std::vector<std::uint8_t>& packet, std::size_t at, std::uint16_t number) {
    packet[at] = static_cast<std::uint8_t>(number >> 8U);
    packet[at + 1] = static_cast<std::uint8_t>(number & 0xFFU);
}

std::uint16_t NumberFrom(std::span<const std::uint8_t> packet, std::size_t at) {
    return static_cast<std::uint16_t>(packet[at] << 8U | packet[at + 1]);
}

// The complement of the sum of all pairs of bytes.
std::uint16_t Checksum(std::span<const std::uint8_t> packet) {
    std::uint32_t sum = 0;
    for (std::size_t at = 0; at < packet.size(); ++at) {
        sum += at % 2 == 0 ? std::uint32_t{packet[at]} << 8U : packet[at];
    }
    while (sum > 0xFFFFU) {
        sum = (sum & 0xFFFFU) + (sum >> 16U);
    }
    return static_cast<std::uint16_t>(~sum);
}

}  // namespace

std::vector<std::uint8_t> EchoRequest(Family family, EchoMark mark, std::size_t size) {
    std::vector<std::uint8_t> packet(EchoHeaderSize + size);
    for (std::size_t at = EchoHeaderSize; at < packet.size(); ++at) {
        packet[at] = static_cast<std::uint8_t>(at & 0xFFU);
    }
    packet[0] = family == Family::IPv4 ? ICMP_ECHO : ICMP6_ECHO_REQUEST;
    PutNumber(packet, IdentifierAt, mark.identifier);
    PutNumber(packet, SequenceAt, mark.sequence);
    if (family == Family::IPv4) {
        PutNumber(packet, ChecksumAt, Checksum(packet));
    }
    return packet;
}

std::optional<EchoMark> EchoReplyTo(Family family, std::span<const std::uint8_t> packet) {
    const std::uint8_t reply = family == Family::IPv4 ? ICMP_ECHOREPLY : ICMP6_ECHO_REPLY;
    if (packet.size() < EchoHeaderSize || packet[0] != reply || packet[1] != 0) {
        return std::nullopt;
    }
    return EchoMark{NumberFrom(packet, IdentifierAt), NumberFrom(packet, SequenceAt)};
}

bool BringsBack(std::span<const std::uint8_t> packet, std::span<const std::uint8_t> request) {
    return packet.size() >= EchoHeaderSize && request.size() >= EchoHeaderSize &&
           std::ranges::equal(packet.subspan(EchoHeaderSize), request.subspan(EchoHeaderSize));
}

std::span<const std::uint8_t> WithoutIPv4Header(std::span<const std::uint8_t> packet) {
    constexpr std::size_t WordSize = 4;
    if (packet.empty() || packet[0] >> 4U != 4) {
        return {};
    }
    const std::size_t header = WordSize * (packet[0] & 0xFU);
    return header <= packet.size() ? packet.subspan(header) : std::span<const std::uint8_t>();
}

}  // namespace tavrolinux
