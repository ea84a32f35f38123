#include "linux/inventory/fibre_channel_names.h"

#include <charconv>
#include <limits>
#include <system_error>

#include "linux/system/attribute.h"

namespace tavrolinux {

std::optional<std::uint64_t> NumberBehind(std::string_view prefix, std::string_view name) {
    if (!name.starts_with(prefix)) {
        return std::nullopt;
    }
    name.remove_prefix(prefix.size());
    std::uint64_t number = 0;
    const char* const end = name.data() + name.size();
    const auto [stop, error] = std::from_chars(name.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

std::string WwnText(std::uint64_t name) {
    constexpr std::string_view Digits = "0123456789ABCDEF";
    constexpr unsigned Bits = 64;
    constexpr unsigned Octet = 8;
    constexpr unsigned Nibble = 4;
    if (name == 0 || name == std::numeric_limits<std::uint64_t>::max()) {
        return {};
    }
    std::string text;
    for (unsigned shift = Bits; shift != 0;) {
        if (shift % Octet == 0 && shift != Bits) {
            text += ':';
        }
        shift -= Nibble;
        text += Digits[(name >> shift) & 0xFU];
    }
    return text;
}

std::string ReadWwn(const std::filesystem::path& attribute) {
    return WwnText(ReadNumber(attribute).value_or(0));
}

}  // namespace tavrolinux
