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
           (character >= 'G' && character <= 'Z') || character == '_';
}

// The length of pairs of hexadecimal digits with the separator between them.
std::size_t PairsLength(std::string_view text, std::size_t pairs, char separator) {
    constexpr std::size_t Step = 3;
    const std::size_t length = pairs * Step - 1;
    if (text.size() < length) {
        return 0;
    }
    for (std::size_t i = 0; i < length; ++i) {
        const bool isRight = i % Step == Step - 1 ? text[i] == separator : IsHexadecimal(text[i]);
        if (!isRight) {
            return 0;
        }
    }
    const bool goesOn =
        text.size() > length + 1 && text[length] == separator && IsHexadecimal(text[length + 1]);
    return goesOn || !IsWordBoundary(text, length) ? 0 : length;
}

std::size_t IdentifierLength(std::string_view text) {
    for (const char separator : {':', '-'}) {
        for (const std::size_t digits : {tavrosim::WwnDigits, tavrosim::MacDigits}) {
            if (const std::size_t length = PairsLength(text, digits / 2, separator)) {
                return length;
            }
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

// An address of an IPv4 kind may be followed by ":" and a port, one of IPv6 by "%" and its zone.
std::size_t AddressLength(std::string_view text) {
    const auto lengthOf = [&](std::string_view characters) {
        return std::min(text.find_first_not_of(characters), text.size());
    };
    const auto trimmed = [&](std::size_t length) {
        while (length > 0 && text[length - 1] == '.') {
            --length;
        }
        return length;
    };
    const auto isAddress = [&](std::size_t length) {
        return length > 1 && IsWordBoundary(text, length) &&
               tavrosim::IpAddressFrom(text.substr(0, length)).has_value();
    };
    const std::size_t longest = trimmed(lengthOf("0123456789abcdefABCDEF:."));
    if (longest > 0 && longest < text.size() && text[longest] == '%') {
        const std::size_t zoneEnd =
            std::min(text.find_first_of(" \t\n,;]\")", longest), text.size());
        if (isAddress(zoneEnd)) {
            return zoneEnd;
        }
    }
    const std::size_t decimal = trimmed(lengthOf("0123456789."));
    for (const std::size_t length :
         {longest, longest > 0 && text[longest - 1] == ':' ? longest - 1 : 0, decimal}) {
        if (isAddress(length)) {
            return length;
        }
    }
    return 0;
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
    const bool isInside =
        place > 0 && (text[place - 1] == '.' || text[place - 1] == ':' || text[place - 1] == '-');
    if (isInside && place > 1 && IsWordCharacter(text[place - 2])) {
        return std::nullopt;
    }
    if (IsWordBoundary(text, place)) {
        if (const std::size_t length = AddressLength(text.substr(place))) {
            return Finding{Finding::Kind::Address, length};
        }
    }
    return std::nullopt;
}

}  // namespace tavrohost
