#include "twin/anonymous/findings.h"

#include <algorithm>

#include "simulator/host/lookup.h"
#include "simulator/model/ip_address.h"

namespace tavrohost {
namespace {

bool IsHexadecimal(char character) {
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f') ||
           (character >= 'A' && character <= 'F');
}

bool IsWordCharacter(char character) {
    return IsHexadecimal(character) || (character >= 'g' && character <= 'z') ||
           (character >= 'G' && character <= 'Z');
}

// How many pairs of hexadecimal digits the text begins with, with the separator between them.
std::size_t PairsAt(std::string_view text, char separator) {
    constexpr std::size_t Pair = 2;
    std::size_t pairs = 0;
    for (std::size_t at = 0; at + Pair <= text.size(); at += Pair + 1) {
        if (!IsHexadecimal(text[at]) || !IsHexadecimal(text[at + 1]) ||
            !IsWordBoundary(text, at + Pair)) {
            break;
        }
        ++pairs;
        if (at + Pair == text.size() || text[at + Pair] != separator) {
            break;
        }
    }
    return pairs;
}

// Where there are more pairs than those of one identifier, several can stand in a row, or a number
// behind one.
std::size_t IdentifierLength(std::string_view text) {
    constexpr std::size_t Step = 3;
    constexpr std::size_t WwnPairs = tavrosim::WwnDigits / 2;
    constexpr std::size_t MacPairs = tavrosim::MacDigits / 2;
    for (const char separator : {':', '-'}) {
        const std::size_t pairs = PairsAt(text, separator);
        if (pairs >= MacPairs) {
            return (pairs % WwnPairs == 0 ? WwnPairs : MacPairs) * Step - 1;
        }
    }
    return 0;
}

std::size_t IscsiNameLength(std::string_view text) {
    constexpr std::string_view Ends = " \t\r\n,;\"'()[]<>{}|";
    constexpr std::string_view Marks = ".:";
    const bool isName =
        text.starts_with("iqn.") || text.starts_with("eui.") || text.starts_with("naa.");
    if (!isName) {
        return 0;
    }
    std::string_view name = text.substr(0, text.find_first_of(Ends));
    while (!name.empty() && Marks.find(name.back()) != std::string_view::npos) {
        name.remove_suffix(1);
    }
    constexpr std::size_t Shortest = 6;
    return name.size() < Shortest ? 0 : name.size();
}

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

// Whether the IPv4 address at the beginning of the text is followed by a fifth number.
bool HasFifthNumber(std::string_view text, std::size_t length) {
    return text.size() > length + 1 && text[length] == '.' && IsDigit(text[length + 1]);
}

// The longest address that the text begins with. One of IPv4 may be followed by ":" and a port, one
// of IPv6 by "%" and its zone.
std::size_t AddressLength(std::string_view text) {
    constexpr std::size_t Longest = 45;
    constexpr std::string_view Marks = ".-_";  // inside a zone
    const std::size_t run =
        std::min(text.find_first_not_of("0123456789abcdefABCDEF:."), text.size());
    if (run > 0 && run < text.size() && text[run] == '%') {
        std::size_t zoneEnd = run + 1;
        while (zoneEnd < text.size() &&
               (IsWordCharacter(text[zoneEnd]) || Marks.find(text[zoneEnd]) != Marks.npos)) {
            ++zoneEnd;
        }
        while (Marks.find(text[zoneEnd - 1]) != Marks.npos) {
            --zoneEnd;
        }
        if (tavrosim::IpAddressFrom(text.substr(0, zoneEnd))) {
            return zoneEnd;
        }
    }
    for (std::size_t length = std::min(run, Longest); length > 1; --length) {
        if (!IsWordBoundary(text, length)) {
            continue;
        }
        const auto address = tavrosim::IpAddressFrom(text.substr(0, length));
        if (address && (address->isIPv6 || !HasFifthNumber(text, length))) {
            return length;
        }
    }
    return 0;
}

// Whether the number at `place` stands behind another one and a dot, as in a long version.
bool FollowsNumber(std::string_view text, std::size_t place) {
    if (place < 2 || text[place - 1] != '.' || !IsDigit(text[place - 2])) {
        return false;
    }
    std::size_t begin = place - 1;
    while (begin > 0 && IsDigit(text[begin - 1])) {
        --begin;
    }
    return IsWordBoundary(text, begin);
}

}  // namespace

bool IsWordBoundary(std::string_view text, std::size_t place) {
    return place == 0 || place >= text.size() || !IsWordCharacter(text[place - 1]) ||
           !IsWordCharacter(text[place]);
}

std::optional<Finding> UnmistakableFindingAt(std::string_view text, std::size_t place) {
    if (!IsWordBoundary(text, place)) {
        return std::nullopt;
    }
    const std::string_view rest = text.substr(place);
    if (const std::size_t length = IscsiNameLength(rest)) {
        return Finding{Finding::Kind::IscsiName, length};
    }
    if (const std::size_t length = IdentifierLength(rest)) {
        return Finding{Finding::Kind::Identifier, length};
    }
    return std::nullopt;
}

std::optional<Finding> FindingAt(std::string_view text, std::size_t place) {
    if (const auto found = UnmistakableFindingAt(text, place)) {
        return found;
    }
    // "::" behind a word belongs to it, as in "std::bad_alloc".
    const bool isInside = text[place] == ':' ? place > 0 && IsWordCharacter(text[place - 1])
                                             : !IsWordBoundary(text, place);
    if (isInside) {
        return std::nullopt;
    }
    const std::size_t length = AddressLength(text.substr(place));
    const bool isIPv6 = text.substr(place, length).find(':') != std::string_view::npos;
    if (length > 0 && (isIPv6 || !FollowsNumber(text, place))) {
        return Finding{Finding::Kind::Address, length};
    }
    return std::nullopt;
}

}  // namespace tavrohost
