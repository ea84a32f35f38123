#include "linux/iscsi/scsi.h"

#include <algorithm>
#include <array>
#include <limits>
#include <set>

#include "linux/system/trimmed.h"

namespace tavrolinux {
namespace {

constexpr std::size_t EntrySize = 8;  // of the list of units

// The text of a field without the blanks and zeros that fill it; what is no printable character
// stands as a blank.
std::string FieldText(ScsiBytes bytes, std::size_t position, std::size_t size) {
    const std::size_t start = std::min(position, bytes.size());
    std::string text;
    for (const std::uint8_t byte : bytes.subspan(start, std::min(size, bytes.size() - start))) {
        text += byte > 0x20 && byte < 0x7F ? static_cast<char>(byte) : ' ';
    }
    return std::string(Trimmed(text));
}

}  // namespace

bool IsLunList(ScsiBytes answer) {
    return answer.size() >= EntrySize;
}

std::vector<std::uint16_t> ParseReportedLuns(ScsiBytes answer) {
    constexpr unsigned MethodBits = 14;
    constexpr unsigned LastFlatMethod = 1;  // 0: peripheral device, 1: flat space
    std::vector<std::uint16_t> luns;
    std::set<std::uint16_t> known;
    if (!IsLunList(answer)) {
        return luns;
    }
    const auto listed = static_cast<std::size_t>(BigEndianAt(answer, 0, 4));
    const std::size_t end = EntrySize + std::min(listed, answer.size() - EntrySize);
    for (std::size_t at = EntrySize; at + EntrySize <= end; at += EntrySize) {
        const auto address = static_cast<std::uint16_t>(BigEndianAt(answer, at, 2));
        const bool isDeeper = BigEndianAt(answer, at + 2, EntrySize - 2) != 0;
        if (address >> MethodBits <= LastFlatMethod && !isDeeper && known.insert(address).second) {
            luns.push_back(address);
        }
    }
    return luns;
}

std::size_t ReportedLunCount(ScsiBytes answer) {
    return !IsLunList(answer) ? 0 : static_cast<std::size_t>(BigEndianAt(answer, 0, 4)) / EntrySize;
}

std::uint16_t LunNumber(std::uint16_t address) {
    return address & 0x3FFFU;
}

std::optional<std::uint8_t> ParseSenseKey(ScsiBytes data) {
    constexpr std::size_t SizeField = 2;
    constexpr std::size_t FixedSize = 18;
    constexpr std::size_t HeaderSize = 8;  // of the other format, before its descriptors
    constexpr std::uint8_t KeyMask = 0x0F;
    if (data.size() < SizeField) {
        return std::nullopt;
    }
    const auto size = static_cast<std::size_t>(BigEndianAt(data, 0, SizeField));
    data = data.subspan(SizeField);
    if (size > data.size() || size < HeaderSize) {
        return std::nullopt;
    }
    const std::uint8_t format = data[0] & 0x7FU;
    if (format == 0x70 || format == 0x71) {
        return data.size() >= FixedSize ? std::optional<std::uint8_t>(data[2] & KeyMask)
                                        : std::nullopt;
    }
    if ((format != 0x72 && format != 0x73) || HeaderSize + data[7] > size) {
        return std::nullopt;
    }
    // Each descriptor has its type and its size in front; the one for a field of the command has 8.
    for (WireBytes left = data.subspan(HeaderSize, data[7]); !left.empty();) {
        if (left.size() < 2 || left.size() < std::size_t{2} + left[1] ||
            (left[0] == 0x02 && left[1] < 6)) {
            return std::nullopt;
        }
        left = left.subspan(std::size_t{2} + left[1]);
    }
    return std::optional<std::uint8_t>(data[1] & KeyMask);
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
               ? FieldText(answer, PageHeaderSize,
                           static_cast<std::size_t>(BigEndianAt(answer, 2, 2)))
               : std::string();
}

std::optional<Capacity> ParseCapacity10(ScsiBytes answer) {
    if (answer.size() < 8) {
        return std::nullopt;
    }
    const std::uint64_t last = BigEndianAt(answer, 0, 4);
    return last == std::numeric_limits<std::uint32_t>::max()
               ? std::nullopt
               : std::optional(
                     Capacity{last + 1, static_cast<std::uint32_t>(BigEndianAt(answer, 4, 4))});
}

std::optional<Capacity> ParseCapacity16(ScsiBytes answer) {
    if (answer.size() < 12) {
        return std::nullopt;
    }
    return Capacity{BigEndianAt(answer, 0, 8) + 1,
                    static_cast<std::uint32_t>(BigEndianAt(answer, 8, 4))};
}

}  // namespace tavrolinux
