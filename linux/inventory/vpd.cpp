#include "linux/inventory/vpd.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "linux/system/attribute.h"

namespace tavrolinux {
namespace {

// The kinds of resources that stand behind each other. Each of these but the end has a length of
// two bytes behind its tag.
constexpr std::uint8_t IdentifierTag = 0x82;
constexpr std::uint8_t ReadOnlyTag = 0x90;
constexpr std::uint8_t ReadWriteTag = 0x91;

std::uint8_t OctetAt(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint8_t>(bytes[at]);
}

// Takes the first `size` bytes off; nothing, and then `bytes` stays, when there are fewer.
std::optional<std::string_view> Take(std::string_view& bytes, std::size_t size) {
    if (bytes.size() < size) {
        return std::nullopt;
    }
    const std::string_view taken = bytes.substr(0, size);
    bytes.remove_prefix(size);
    return taken;
}

std::string ProductText(std::string_view value) {
    constexpr std::string_view Filling(" \0", 2);
    const auto first = value.find_first_not_of(Filling);
    if (first == std::string_view::npos) {
        return {};
    }
    value = value.substr(first, value.find_last_not_of(Filling) - first + 1);
    const bool isText =
        std::ranges::all_of(value, [](char one) { return one >= ' ' && one <= '~'; });
    return isText ? std::string(value) : std::string();
}

// Of a keyword that stands there twice the first counts.
void TakeKeywords(std::string_view bytes, ProductData& data) {
    constexpr std::size_t HeaderSize = 3;
    while (const auto header = Take(bytes, HeaderSize)) {
        const auto value = Take(bytes, OctetAt(*header, 2));
        if (!value) {
            return;
        }
        const std::string_view keyword = header->substr(0, 2);
        if (keyword == "SN" && data.serialNumber.empty()) {
            data.serialNumber = ProductText(*value);
        } else if (keyword == "PN" && data.partNumber.empty()) {
            data.partNumber = ProductText(*value);
        }
    }
}

}  // namespace

ProductData ParseProductData(std::string_view bytes) {
    constexpr std::size_t HeaderSize = 3;
    ProductData data;
    while (const auto header = Take(bytes, HeaderSize)) {
        const std::uint8_t tag = OctetAt(*header, 0);
        const std::size_t size = OctetAt(*header, 1) + (std::size_t{OctetAt(*header, 2)} << 8U);
        const auto resource = Take(bytes, size);
        if (!resource || (tag != IdentifierTag && tag != ReadOnlyTag && tag != ReadWriteTag)) {
            break;
        }
        if (tag == ReadOnlyTag) {
            TakeKeywords(*resource, data);
        }
    }
    return data;
}

std::optional<ProductData> ReadProductData(const std::filesystem::path& device) {
    const auto bytes = ReadBytesBeforeFailure(device / "vpd");
    return bytes ? std::optional(ParseProductData(*bytes)) : std::nullopt;
}

}  // namespace tavrolinux
