#include "linux/iscsi/initiator_name.h"

#include <unistd.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "linux/system/access.h"
#include "linux/system/attribute.h"
#include "linux/system/trimmed.h"

namespace tavrolinux {
namespace {

constexpr std::string_view NameKey = "InitiatorName";
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

bool IsControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7F;
}

bool IsFigure(char character) {
    return character >= '0' && character <= '9';
}

bool IsHexadecimal(char character) {
    return IsFigure(character) || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

bool IsOfAnIqn(char character) {
    return IsFigure(character) || (character >= 'a' && character <= 'z') ||
           (character >= 'A' && character <= 'Z') ||
           std::string_view("-.:_").find(character) != std::string_view::npos ||
           static_cast<unsigned char>(character) >= 0x80;
}

// The name that a line states.
std::optional<std::string_view> NameOfLine(std::string_view line) {
    line = Trimmed(line);
    if (!line.starts_with(NameKey)) {
        return std::nullopt;
    }
    line = Trimmed(line.substr(NameKey.size()));
    if (!line.starts_with('=')) {
        return std::nullopt;
    }
    const std::string_view name = Trimmed(line.substr(1));
    const bool isName =
        !name.empty() && name.size() <= LongestIscsiName && std::ranges::none_of(name, IsControl);
    return isName ? std::optional(name) : std::nullopt;
}

// Each name that a line of the text states, as a part of the text.
std::vector<std::string_view> NamesOf(std::string_view text) {
    std::vector<std::string_view> names;
    if (text.starts_with(ByteOrderMark)) {
        text.remove_prefix(ByteOrderMark.size());
    }
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        if (const auto name = NameOfLine(line)) {
            names.push_back(*name);
        }
        text.remove_prefix(std::min(text.size(), line.size() + 1));
    }
    return names;
}

}  // namespace

std::filesystem::path InitiatorNameFile(const Roots& roots) {
    return roots.etc / "iscsi/initiatorname.iscsi";
}

std::string ReadInitiatorName(const Roots& roots) {
    WantAccess(InitiatorNameFile(roots), R_OK, "reading");
    return InitiatorNameIfReadable(roots);
}

std::string InitiatorNameIfReadable(const Roots& roots) {
    return ParseInitiatorName(ReadBytes(InitiatorNameFile(roots)).value_or(std::string()));
}

std::string ParseInitiatorName(std::string_view text) {
    const auto names = NamesOf(text);
    return names.empty() ? std::string() : std::string(names.front());
}

std::string WithInitiatorName(std::string_view text, std::string_view name) {
    const auto names = NamesOf(text);
    std::string changed;
    const char* rest = text.data();
    for (const std::string_view old : names) {
        changed.append(rest, old.data()).append(name);
        rest = old.data() + old.size();
    }
    changed.append(rest, text.data() + text.size());
    if (!names.empty()) {
        return changed;
    }
    const char* const lineEnd = text.find("\r\n") == std::string_view::npos ? "\n" : "\r\n";
    if (!changed.empty() && changed.back() != '\n') {
        changed += lineEnd;
    }
    return changed.append(NameKey).append("=").append(name).append(lineEnd);
}

bool IsInitiatorName(std::string_view name) {
    constexpr std::size_t PrefixSize = 4;
    constexpr std::size_t ShortIdentifier = 16;
    constexpr std::size_t LongIdentifier = 32;
    if (name.size() <= PrefixSize || name.size() > LongestIscsiName) {
        return false;
    }
    const std::string_view prefix = name.substr(0, PrefixSize);
    const std::string_view rest = name.substr(PrefixSize);
    if (prefix == "iqn.") {
        return std::ranges::all_of(rest, IsOfAnIqn);
    }
    const bool hasSize =
        rest.size() == ShortIdentifier || (prefix == "naa." && rest.size() == LongIdentifier);
    return (prefix == "eui." || prefix == "naa.") && hasSize &&
           std::ranges::all_of(rest, IsHexadecimal);
}

}  // namespace tavrolinux
