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

// The MAC, WWN, IP address or iSCSI name that begins at `place`, which lies in the text, and is no
// part of a longer word; a word is made of letters and digits. MACs and WWNs are found with one
// kind of separator between all of their pairs. Four numbers behind or before a fifth one and a dot
// are a version.
std::optional<Finding> FindingAt(std::string_view text, std::size_t place);

// The same without IP addresses, which versions look like.
std::optional<Finding> UnmistakableFindingAt(std::string_view text, std::size_t place);

// Whether a word can begin at `place`, and end before it.
bool IsWordBoundary(std::string_view text, std::size_t place);

}  // namespace tavrohost
