#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// What the kernel writes about Fibre Channel, in the words of listings. Whatever is unknown is
// empty.
namespace tavrolinux {

// Without the words that stand for nothing: "unspecified", "Unknown".
std::string KnownText(std::string_view told);

// "10 Gbps" of "10 Gbit", "1 Gbps, 10 Gbps" of "1 Gbit, 10 Gbit".
std::string GigabitsText(std::string_view told);

// "Up" and "Down" of the states that mean it, and any other state as it is.
std::string FcLinkText(std::string_view portState);

// What a port of a fabric is over Ethernet, "VN_Port", and any other type as it is.
std::string FcPortTypeText(std::string_view portType);

// The 64 digits of 32 octets "0x00 0x00 0x01 ..."; empty for anything else.
std::string FcTypesText(std::string_view told);

// The digits that a text such as "2048 bytes" begins with.
std::string LeadingDigits(std::string_view told);

// A number as that many hexadecimal digits, "0EFC00"; empty for 0, which stands for none, and for
// what has more digits.
std::string HexadecimalText(std::optional<std::uint64_t> number, std::size_t digits);

// What a SCSI device of that number of a type is: "Disk"; "Type 31" for one without a name.
std::string ScsiTypeText(std::optional<std::uint64_t> type);

// Whether a SCSI device is to be reached: "Online", "Offline", and any other state as it is.
std::string ScsiStateText(std::string_view state);

}  // namespace tavrolinux
