#include "linux/fcoe/kernel_texts.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tavrolinux {

std::string KnownText(std::string_view told) {
    constexpr std::array<std::string_view, 5> Nothing{"unknown", "Unknown", "unspecified", "(null)",
                                                      "<NULL>"};
    return std::ranges::find(Nothing, told) == Nothing.end() ? std::string(told) : std::string();
}

std::string GigabitsText(std::string_view told) {
    constexpr std::string_view Kernel = " Gbit";
    constexpr std::string_view Ours = " Gbps";
    if (told == "Not Negotiated") {
        return {};
    }
    std::string text = KnownText(told);
    for (auto at = text.find(Kernel); at != std::string::npos; at = text.find(Kernel, at)) {
        text.replace(at, Kernel.size(), Ours);
    }
    return text;
}

std::string FcLinkText(std::string_view portState) {
    if (portState == "Online") {
        return "Up";
    }
    return portState == "Linkdown" || portState == "Offline" ? "Down" : KnownText(portState);
}

std::string FcPortTypeText(std::string_view portType) {
    return portType.starts_with("NPort ") ? "VN_Port" : KnownText(portType);
}

std::string FcTypesText(std::string_view told) {
    constexpr std::size_t Octets = 32;
    constexpr std::size_t Width = 5;  // "0x00" and a blank
    std::string text;
    for (; told.size() >= Width - 1; told.remove_prefix(std::min(Width, told.size()))) {
        const std::string_view digits = told.substr(2, 2);
        const bool isOctet =
            told.starts_with("0x") && (told.size() < Width || told[Width - 1] == ' ') &&
            digits.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
        if (!isOctet) {
            return {};
        }
        text += digits;
    }
    return told.empty() && text.size() == 2 * Octets ? text : std::string();
}

std::string LeadingDigits(std::string_view told) {
    return std::string(told.substr(0, told.find_first_not_of("0123456789")));
}

std::string HexadecimalText(std::optional<std::uint64_t> number, std::size_t digits) {
    constexpr std::string_view Digits = "0123456789ABCDEF";
    constexpr unsigned Nibble = 4;
    if (number.value_or(0) == 0) {
        return {};
    }
    std::uint64_t rest = *number;
    std::string text(digits, '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, rest >>= Nibble) {
        *digit = Digits[rest & 0xFU];
    }
    return rest == 0 ? text : std::string();
}

std::string ScsiTypeText(std::optional<std::uint64_t> type) {
    constexpr std::pair<std::uint64_t, std::string_view> Names[] = {
        {0, "Disk"},          {1, "Tape Drive"},
        {3, "Processor"},     {4, "Write-once Device"},
        {5, "CD-ROM"},        {7, "Optical Device"},
        {8, "Media Changer"}, {12, "Storage Array Controller"},
        {13, "Enclosure"},    {14, "Disk"},
    };
    if (!type) {
        return {};
    }
    const auto* const found =
        std::ranges::find(Names, *type, [](const auto& row) { return row.first; });
    return found == std::ranges::end(Names) ? "Type " + std::to_string(*type)
                                            : std::string(found->second);
}

std::string ScsiStateText(std::string_view state) {
    if (state == "running") {
        return "Online";
    }
    return state == "offline" || state == "transport-offline" ? "Offline" : std::string(state);
}

}  // namespace tavrolinux
