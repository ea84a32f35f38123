#include "linux/iscsi/scsi.h"

#include <algorithm>
#include <array>
#include <limits>

namespace tavrolinux {
namespace {

// The number of `size` bytes at `position`, the highest byte first.
std::uint64_t NumberAt(ScsiBytes bytes, std::size_t position, std::size_t size) {
    std::uint64_t number = 0;
    for (const std::uint8_t byte : bytes.subspan(position, size)) {
        number = number << 8U | byte;
    }
    return number;
}

// The text of a field without the blanks and zeros that fill it; what is no printable character
// stands as a blank.
std::string FieldText(ScsiBytes bytes, std::size_t position, std::size_t size) {
    const std::size_t start = std::min(position, bytes.size());
    std::string text;
    for (const std::uint8_t byte : bytes.subspan(start, std::min(size, bytes.size() - start))) {
        text += byte > 0x20 && byte < 0x7F ? static_cast<char>(byte) : ' ';
    }
    const auto first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::vector<std::uint16_t> ParseReportedLuns(ScsiBytes answer) {
    constexpr std::size_t EntrySize = 8;
    constexpr unsigned MethodBits = 14;
    constexpr unsigned LastFlatMethod = 1;  // 0: peripheral device, 1: flat space
    std::vector<std::uint16_t> luns;
    if (answer.size() < EntrySize) {
        return luns;
    }
    const auto listed = static_cast<std::size_t>(NumberAt(answer, 0, 4));
    const std::size_t end = EntrySize + std::min(listed, answer.size() - EntrySize);
    for (std::size_t at = EntrySize; at + EntrySize <= end; at += EntrySize) {
        const auto address = static_cast<std::uint16_t>(NumberAt(answer, at, 2));
        const bool isDeeper = NumberAt(answer, at + 2, EntrySize - 2) != 0;
        if (address >> MethodBits <= LastFlatMethod && !isDeeper) {
            luns.push_back(address);
        }
    }
    return luns;
}

std::uint16_t LunNumber(std::uint16_t address) {
    return address & 0x3FFFU;
}

Inquiry ParseInquiry(ScsiBytes answer) {
    constexpr std::array<std::uint8_t, 4> TypesWithBlocks{0x00, 0x05, 0x07, 0x0E};
    Inquiry inquiry;
    if (answer.empty()) {
        return inquiry;
    }
    const auto type = static_cast<std::uint8_t>(answer[0] & 0x1FU);
    inquiry.isThere = answer[0] >> 5U == 0;
    inquiry.hasBlocks = std::ranges::find(TypesWithBlocks, type) != TypesWithBlocks.end();
    inquiry.vendor = FieldText(answer, 8, 8);
    inquiry.product = FieldText(answer, 16, 16);
    return inquiry;
}

std::string ParseSerialNumber(ScsiBytes answer) {
    constexpr std::size_t PageHeaderSize = 4;
    constexpr std::uint8_t Page = 0x80;
    return answer.size() >= PageHeaderSize && answer[1] == Page
               ? FieldText(answer, PageHeaderSize, static_cast<std::size_t>(NumberAt(answer, 2, 2)))
               : std::string();
}

std::optional<Capacity> ParseCapacity10(ScsiBytes answer) {
    if (answer.size() < 8) {
        return std::nullopt;
    }
    const std::uint64_t last = NumberAt(answer, 0, 4);
    return last == std::numeric_limits<std::uint32_t>::max()
               ? std::nullopt
               : std::optional(
                     Capacity{last + 1, static_cast<std::uint32_t>(NumberAt(answer, 4, 4))});
}

std::optional<Capacity> ParseCapacity16(ScsiBytes answer) {
    if (answer.size() < 12) {
        return std::nullopt;
    }
    return Capacity{NumberAt(answer, 0, 8) + 1, static_cast<std::uint32_t>(NumberAt(answer, 8, 4))};
}

}  // namespace tavrolinux
