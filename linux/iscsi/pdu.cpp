#include "linux/iscsi/pdu.h"

#include <algorithm>

namespace tavrolinux {
namespace {

constexpr std::size_t WordSize = 4;
constexpr std::size_t DigestSize = 4;
constexpr std::uint8_t OpcodeMask = 0x3F;

// Where a header has what.
constexpr std::size_t ExtraWordsAt = 4;
constexpr std::size_t DataSizeAt = 5;
constexpr std::size_t TaskTagAt = 16;

std::size_t DataStart(bool hasDigest) {
    return PduHeaderSize + (hasDigest ? DigestSize : 0);
}

}  // namespace

Opcode OpcodeOf(WireBytes header) {
    return static_cast<Opcode>(header[0] & OpcodeMask);
}

std::uint32_t TaskTagOf(WireBytes header) {
    return static_cast<std::uint32_t>(BigEndianAt(header, TaskTagAt, 4));
}

std::size_t DataSizeOf(WireBytes header) {
    return static_cast<std::size_t>(BigEndianAt(header, DataSizeAt, 3));
}

void SetNoData(std::span<std::uint8_t> header) {
    std::fill_n(header.begin() + DataSizeAt, 3, std::uint8_t{0});
}

bool HasExtraHeader(WireBytes header) {
    return header[ExtraWordsAt] != 0;
}

std::uint8_t FlagsOf(WireBytes header) {
    return header[1];
}

std::size_t PduSize(WireBytes header, bool hasDigest) {
    return DataStart(hasDigest) + (DataSizeOf(header) + WordSize - 1) / WordSize * WordSize;
}

WireBytes DataOf(WireBytes pdu, bool hasDigest) {
    return pdu.size() < PduHeaderSize || pdu.size() < PduSize(pdu, hasDigest)
               ? WireBytes()
               : pdu.subspan(DataStart(hasDigest), DataSizeOf(pdu));
}

// It takes no number of its own among the commands, so that who made the first request need not
// know of it.
std::optional<std::vector<std::uint8_t>> RequestForRestOfText(WireBytes response) {
    constexpr std::uint8_t Immediate = 0x40;
    constexpr std::uint8_t Final = 0x80;
    constexpr std::size_t UnitAt = 8;  // number of the logical unit, task tag and transfer tag
    constexpr std::size_t TransferTagAt = 20;
    constexpr std::size_t StatusNumberAt = 24;
    constexpr std::size_t ExpectedCommandAt = 28;
    constexpr std::size_t CommandNumberAt = 24;
    constexpr std::size_t ExpectedStatusAt = 28;
    if (BigEndianAt(response, TransferTagAt, 4) == NoTask) {
        return std::nullopt;
    }
    std::vector<std::uint8_t> request(PduHeaderSize);
    request[0] = static_cast<std::uint8_t>(Opcode::TextRequest) | Immediate;
    request[1] = Final;
    std::copy_n(response.begin() + UnitAt, TransferTagAt + 4 - UnitAt, request.begin() + UnitAt);
    std::copy_n(response.begin() + ExpectedCommandAt, 4, request.begin() + CommandNumberAt);
    const auto next = static_cast<std::uint32_t>(BigEndianAt(response, StatusNumberAt, 4) + 1);
    for (std::size_t byte = 0; byte < 4; ++byte) {
        request[ExpectedStatusAt + byte] = static_cast<std::uint8_t>(next >> (24U - 8U * byte));
    }
    return request;
}

std::optional<std::vector<TextKey>> ParseTextKeys(WireBytes data) {
    std::vector<TextKey> keys;
    std::string_view text(reinterpret_cast<const char*>(data.data()), data.size());
    // Zeros behind the last text fill the data up.
    while (!text.empty() && text.front() != '\0') {
        const auto end = text.find('\0');
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        const std::string_view pair = text.substr(0, end);
        const auto sign = pair.find('=');
        if (sign == 0 || sign == std::string_view::npos) {
            return std::nullopt;
        }
        keys.push_back({pair.substr(0, sign), pair.substr(sign + 1)});
        text.remove_prefix(end + 1);
    }
    return text.find_first_not_of('\0') == std::string_view::npos ? std::optional(keys)
                                                                  : std::nullopt;
}

}  // namespace tavrolinux
