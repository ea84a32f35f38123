#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tavrolinux {

// A Fibre Channel name as listings write it, "10:00:02:00:5E:10:00:04"; empty for the names that
// stand for none, all zeros or all ones.
std::string WwnText(std::uint64_t name);

// The name that the attribute holds; empty when it holds none.
std::string ReadWwn(const std::filesystem::path& attribute);

// The number at the end of a name such as "host3"; nothing when it does not begin with `prefix`, or
// anything else follows.
std::optional<std::uint64_t> NumberBehind(std::string_view prefix, std::string_view name);

}  // namespace tavrolinux
