#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "twin/anonymous/positions.h"

namespace tavrohost {

// The values that are replaced, and what stands in for them. All values are noted first, so that no
// stand-in is a value of the host itself.
class StandInBook {
  public:
    // Notes a value where it stands: a MAC or WWN, an IP address, an iSCSI name or another name.
    // A text that is none of that kind is not noted.
    void Note(TextKind kind, std::string_view text);

    // What stands in for it; the text itself where it was not noted. A name that was noted in other
    // letter case only has the stand-in of that one. Throws TroubleError when there are more
    // addresses, IPv6 ones included, than the range for IPv4 has stand-ins.
    std::string StandIn(TextKind kind, std::string_view text);

    // The name at the beginning of a text, up to the end of a word, that was noted, be it in other
    // letter case; the longest where there are several, empty where there is none. Only names that
    // say something.
    std::string_view NameAt(std::string_view text) const;

    // Whether a MAC's or WWN's digits were noted.
    bool HasIdentifier(const std::string& digits) const;

  private:
    std::string IdentifierStandIn(std::string_view text);
    std::string AddressStandIn(std::string_view text);
    std::string NameStandIn(TextKind kind, std::string_view text);
    const std::string& TailStandIn(const std::string& digits);

    std::set<std::string> tails_;        // the last digits of MACs and WWNs
    std::set<std::string> identifiers_;  // all digits of them
    std::set<std::string> addresses_;    // in one form for all spellings
    std::set<std::string, std::less<>> names_;
    std::map<std::string, std::string> firstSpellings_;  // of names, by their small letters
    std::map<std::string, std::string> tailStandIns_;
    std::map<std::string, std::string> addressStandIns_;  // by the address in one form
    std::map<std::string, std::vector<std::string>> addressSpellings_;  // as they were met
    std::unordered_map<std::string, std::string> nameStandIns_;
    // Lengths of names by their first characters in small letters, for finding them in texts.
    std::unordered_map<std::string, std::set<std::size_t>> lengths_;
    std::map<TextKind, std::uint64_t> counts_;
    std::uint64_t tailCount_ = 0;
    std::uint64_t addressCount_ = 0;
};

}  // namespace tavrohost
