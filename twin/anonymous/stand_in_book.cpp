#include "twin/anonymous/stand_in_book.h"

#include <algorithm>
#include <array>
#include <bit>

#include "simulator/host/lookup.h"
#include "simulator/host/numerals.h"
#include "simulator/model/ip_address.h"
#include "twin/anonymous/findings.h"
#include "twin/exit_status.h"

namespace tavrohost {
namespace {

using tavrosim::IpAddress;
using tavrosim::MacDigits;
using tavrosim::NormalIdentifier;

// Words that libraries put where there is no name, in any letter case, and switches.
constexpr std::string_view NoNames[] = {
    "NA",      "N/A",         "NONE", "NO",     "YES",   "UNKNOWN",    "ANY",        "-",
    "ENABLED", "DISABLED",    "DHCP", "STATIC", "AUTO",  "AUTOMATIC",  "UNASSIGNED", "DEFAULT",
    "NOT SET", "UNAVAILABLE", "NULL", "(NULL)", "UNSET", "NOT PRESENT"};

std::string SmallLetters(std::string_view text) {
    std::string small(text);
    std::ranges::transform(small, small.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return small;
}

constexpr struct {
    TextKind kind;
    std::string_view prefix;
} Prefixes[] = {
    {TextKind::IscsiName, "iqn.2001-04.com.example:name-"},
    {TextKind::HostName, "host-"},
    {TextKind::InterfaceName, "interface-"},
    {TextKind::DeviceName, "device-"},
    {TextKind::SerialNumber, "serial-"},
    {TextKind::Alias, "alias-"},
    {TextKind::ChapName, "chap-"},
    {TextKind::FunctionKey, "function-"},
};

bool IsName(std::string_view text) {
    return text.find_first_not_of(' ') != std::string_view::npos &&
           std::ranges::find(NoNames, tavrosim::Capitals(text)) == std::end(NoNames);
}

// A name that can be meant where it stands among other words.
bool IsTelling(std::string_view name) {
    constexpr std::size_t Shortest = 3;
    constexpr std::size_t ShortestNumber = 6;
    const bool isNumber = name.find_first_not_of("0123456789") == std::string_view::npos;
    return name.size() >= (isNumber ? ShortestNumber : Shortest);
}

constexpr std::size_t KeyLength = 3;  // not above the shortest telling name

// A MAC that belongs to nobody, or is made by a fabric of its own numbers (0E-FC-...).
bool IsNobodys(const std::string& digits) {
    return digits.find_first_not_of('0') == std::string::npos ||
           digits.find_first_not_of('f') == std::string::npos || digits.starts_with("0efc");
}

std::uint32_t NumberOf(const IpAddress& address) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < sizeof(number); ++i) {
        number = number << 8U | address.octets[i];
    }
    return number;
}

// Addresses that are nobody's: unset ones, masks, loopback, multicast.
bool IsNobodys(const IpAddress& address) {
    if (address.isIPv6) {
        constexpr std::uint8_t Multicast = 0xFF;
        const bool isLow = std::all_of(address.octets.begin(), address.octets.end() - 1,
                                       [](std::uint8_t octet) { return octet == 0; });
        return (isLow && address.octets.back() <= 1) || address.octets.front() == Multicast;
    }
    constexpr std::uint32_t Loopback = 127;
    constexpr std::uint32_t FirstMulticast = 224;
    const std::uint32_t number = NumberOf(address);
    const std::uint32_t first = number >> 24U;
    const bool isMask = first >= 128 && std::has_single_bit(~number + 1);
    return number == 0 || first == Loopback || first >= FirstMulticast || isMask;
}

// One text for all spellings of an address. Its zone is replaced apart.
std::string FormOf(const IpAddress& address) {
    std::string form = address.isIPv6 ? "6" : "4";
    form.append(address.octets.begin(), address.octets.end());
    return form;
}

bool IsLinkLocal(const IpAddress& address) {
    return address.isIPv6 && address.octets[0] == 0xFE && (address.octets[1] & 0xC0U) == 0x80U;
}

// Another spelling of "prefix::number", for each further one in which the host writes the address:
// in small letters and capitals, then with further groups of one to four zeros. After 682 of them
// they begin anew.
std::string Respelled(const std::string& address, std::size_t spelling) {
    constexpr std::size_t MostZeros = 4;
    constexpr std::size_t Spellings = 1 + 4 + 16 + 64 + 256;  // with up to four groups
    const std::size_t gap = address.find("::");
    std::string spelled = address.substr(0, gap);
    for (std::size_t groups = spelling / 2 % Spellings; groups > 0;
         groups = (groups - 1) / MostZeros) {
        spelled += ':' + std::string((groups - 1) % MostZeros + 1, '0');
    }
    spelled += address.substr(gap);
    return spelling % 2 == 0 ? spelled : tavrosim::Capitals(spelled);
}

// The digits in the form of the text: with its separators, in capitals unless it has small letters.
std::string Formatted(const std::string& digits, std::string_view text) {
    const bool isSmall = std::ranges::any_of(
        text, [](char character) { return character >= 'a' && character <= 'f'; });
    const std::string shown = isSmall ? digits : tavrosim::Capitals(digits);
    std::string formatted;
    std::size_t next = 0;
    for (const char character : text) {
        const bool isSeparator = character == ':' || character == '-';
        formatted += isSeparator ? character : shown[next++];
    }
    return formatted;
}

}  // namespace

void StandInBook::Note(TextKind kind, std::string_view text) {
    if (kind == TextKind::Identifier) {
        const std::string digits = NormalIdentifier(text);
        if (!digits.empty()) {
            identifiers_.insert(digits);
            tails_.insert(digits.substr(digits.size() - MacDigits));
        }
    } else if (kind == TextKind::Address) {
        if (const auto address = tavrosim::IpAddressFrom(text)) {
            addresses_.insert(FormOf(*address));
            Note(TextKind::InterfaceName, address->zone);
        }
    } else if (IsName(text) && names_.emplace(text).second) {
        const std::string small = SmallLetters(text);
        firstSpellings_.try_emplace(small, text);
        if (IsTelling(text)) {
            lengths_[small.substr(0, KeyLength)].insert(text.size());
        }
    }
}

std::string StandInBook::StandIn(TextKind kind, std::string_view text) {
    if (kind == TextKind::Identifier) {
        return IdentifierStandIn(text);
    }
    return kind == TextKind::Address ? AddressStandIn(text) : NameStandIn(kind, text);
}

std::string_view StandInBook::NameAt(std::string_view text) const {
    const auto lengths = lengths_.find(SmallLetters(text.substr(0, KeyLength)));
    if (lengths == lengths_.end()) {
        return {};
    }
    for (auto length = lengths->second.rbegin(); length != lengths->second.rend(); ++length) {
        const std::string_view name = text.substr(0, *length);
        if (name.size() == *length && IsWordBoundary(text, *length) &&
            firstSpellings_.contains(SmallLetters(name))) {
            return name;
        }
    }
    return {};
}

bool StandInBook::HasIdentifier(const std::string& digits) const {
    return identifiers_.contains(digits);
}

const std::string& StandInBook::TailStandIn(const std::string& digits) {
    std::string& standIn = tailStandIns_[digits];
    if (standIn.empty() && IsNobodys(digits)) {
        standIn = digits;
    }
    while (standIn.empty()) {
        constexpr std::uint64_t FirstLocal = 0x020000000000;
        std::string candidate = SmallLetters(tavrosim::HexOf(FirstLocal + ++tailCount_, MacDigits));
        if (!tails_.contains(candidate)) {
            standIn = std::move(candidate);
        }
    }
    return standIn;
}

std::string StandInBook::IdentifierStandIn(std::string_view text) {
    const std::string digits = NormalIdentifier(text);
    if (!identifiers_.contains(digits)) {
        return std::string(text);
    }
    const std::size_t tail = digits.size() - MacDigits;
    return Formatted(digits.substr(0, tail) + TailStandIn(digits.substr(tail)), text);
}

std::string StandInBook::AddressStandIn(std::string_view text) {
    const auto address = tavrosim::IpAddressFrom(text);
    if (!address || IsNobodys(*address)) {
        return std::string(text);
    }
    const std::string form = FormOf(*address);
    std::string& standIn = addressStandIns_[form];
    while (standIn.empty()) {
        constexpr std::uint64_t Room = 0x1FFFF;  // of 198.18.0.0/15
        const std::uint64_t number = ++addressCount_;
        std::string candidate;
        if (address->isIPv6) {
            std::string digits = SmallLetters(tavrosim::HexOf(number % 0x10000, 4));
            digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size() - 1));
            const std::uint64_t group = number / 0x10000;
            candidate = (IsLinkLocal(*address) ? "fe80" : "2001:db8") +
                        (group == 0 ? std::string() : ":" + std::to_string(group)) + "::" + digits;
        } else {
            if (number >= Room) {
                throw TroubleError("there are more addresses than stand-ins for them");
            }
            candidate = "198." + std::to_string(18 + number / 0x10000) + '.' +
                        std::to_string(number / 0x100 % 0x100) + '.' +
                        std::to_string(number % 0x100);
        }
        const auto candidateAddress = tavrosim::IpAddressFrom(candidate);
        if (!names_.contains(candidate) && !addresses_.contains(FormOf(candidateAddress.value()))) {
            standIn = std::move(candidate);
        }
    }
    if (!address->isIPv6) {
        return standIn;
    }
    const std::size_t zone = std::min(text.find('%'), text.size());
    std::vector<std::string>& spellings = addressSpellings_[form];
    const std::string spelling(text.substr(0, zone));
    auto found = std::ranges::find(spellings, spelling);
    if (found == spellings.end()) {
        found = spellings.insert(spellings.end(), spelling);
    }
    std::string written = Respelled(standIn, static_cast<std::size_t>(found - spellings.begin()));
    if (zone < text.size()) {
        written += '%' + NameStandIn(TextKind::InterfaceName, text.substr(zone + 1));
    }
    return written;
}

std::string StandInBook::NameStandIn(TextKind kind, std::string_view text) {
    std::string name(text);
    if (!names_.contains(name)) {
        const auto first = firstSpellings_.find(SmallLetters(name));
        if (first == firstSpellings_.end()) {
            return name;
        }
        name = first->second;
    }
    std::string& standIn = nameStandIns_[name];
    const auto* const row =
        std::ranges::find(Prefixes, kind, [](const auto& each) { return each.kind; });
    while (standIn.empty() && row != std::end(Prefixes)) {
        std::string candidate = std::string(row->prefix) + std::to_string(++counts_[kind]);
        if (!names_.contains(candidate)) {
            standIn = std::move(candidate);
        }
    }
    return standIn.empty() ? name : standIn;
}

}  // namespace tavrohost
