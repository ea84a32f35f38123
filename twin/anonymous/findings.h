#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// What identifies somebody, as it stands in texts of unknown meaning.
namespace tavrohost {

// What is found at a place of a text.
struct Finding {
    enum class Kind { Identifier, Address, IscsiName };
    Kind kind{};
    std::size_t length = 0;
};

// The MAC, WWN, IP address or iSCSI name that begins at `place` and is no part of a longer word.
// MACs and WWNs are found with one kind of separator between all of their pairs.
std::optional<Finding> FindingAt(std::string_view text, std::size_t place);

// The same without IP addresses, which versions look like.
std::optional<Finding> UnmistakableFindingAt(std::string_view text, std::size_t place);

// Whether a word can begin at `place`, and end before it.
bool IsWordBoundary(std::string_view text, std::size_t place);

}  // namespace tavrohost
