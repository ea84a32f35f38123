#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Reading what the kernel tells in files: one value each, in folders of sysfs and procfs.
namespace tavrolinux {

// What is read of one file at most. No attribute is longer than a page; a device's product data can
// have 32 KiB.
inline constexpr std::size_t LongestAttribute = std::size_t{64} << 10;

// The bytes of the file, at most `longest` of them; nothing when there is no such file, or it
// cannot be read. Many attributes of a device refuse to be read while it is down.
std::optional<std::string> ReadBytes(const std::filesystem::path& file,
                                     std::size_t longest = LongestAttribute);

// The bytes that the file gives before the first failure, at most `longest` of them; nothing when
// it gives none. They are read in small pieces, since a device that fails at one byte may be asked
// for those before it alone.
std::optional<std::string> ReadBytesBeforeFailure(const std::filesystem::path& file,
                                                  std::size_t longest = LongestAttribute);

// Reads into the place, and returns how many bytes came: 0 at the end, negative on a failure.
using PieceReader = std::function<std::ptrdiff_t(std::span<char> place)>;

// What the reader gives in pieces of that size, at most `longest` bytes, and whether it failed
// behind them.
struct CollectedBytes {
    std::string bytes;
    bool hasFailed = false;
};
CollectedBytes CollectBytes(const PieceReader& read, std::size_t longest, std::size_t piece);

// The text of an attribute without the blanks and line ends around it; empty when it cannot be
// read.
std::string ReadAttribute(const std::filesystem::path& file);

// The number that the text is, in decimal or, behind "0x", in hexadecimal; nothing for anything
// else.
std::optional<std::uint64_t> NumberFrom(std::string_view text);

// The number that an attribute holds, in decimal or, behind "0x", in hexadecimal; nothing when it
// cannot be read or holds anything else.
std::optional<std::uint64_t> ReadNumber(const std::filesystem::path& file);

// The names in the folder, in order; empty when it cannot be read.
std::vector<std::string> NamesIn(const std::filesystem::path& folder);

// The last name of what the symbolic link leads to ("ixgbe" of a device's link "driver"); empty
// when there is no such link.
std::string LinkedName(const std::filesystem::path& link);

// The folder that the link leads to, without links; nothing when it leads nowhere.
std::optional<std::filesystem::path> Resolved(const std::filesystem::path& link);

}  // namespace tavrolinux
