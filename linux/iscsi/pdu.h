#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "linux/iscsi/big_endian.h"

// The units in which both sides of an iSCSI connection talk, read from their bytes: a header, and
// data filled up to whole words.
namespace tavrolinux {

inline constexpr std::size_t PduHeaderSize = 48;

// What a header says. It has to be there as a whole.
enum class Opcode : std::uint8_t {
    LoginRequest = 0x03,
    TextRequest = 0x04,
    NopIn = 0x20,
    ScsiResponse = 0x21,
    LoginResponse = 0x23,
    TextResponse = 0x24,
    DataIn = 0x25,
    LogoutResponse = 0x26,
    AsyncMessage = 0x32,
    Reject = 0x3F,
};
Opcode OpcodeOf(WireBytes header);
std::uint32_t TaskTagOf(WireBytes header);
inline constexpr std::uint32_t NoTask = 0xFFFFFFFFU;
std::size_t DataSizeOf(WireBytes header);
void SetNoData(std::span<std::uint8_t> header);
bool HasExtraHeader(WireBytes header);
// The second byte, whose bits differ by opcode.
std::uint8_t FlagsOf(WireBytes header);

// How many bytes the unit has with that header, with or without a digest of it.
std::size_t PduSize(WireBytes header, bool hasDigest);

// Its data, without what fills it up; empty where the unit is not there as a whole.
WireBytes DataOf(WireBytes pdu, bool hasDigest);

// The request for what follows a response with only a piece of its text. Nothing where the
// response, which has to be there as a whole, does not let it be asked for.
std::optional<std::vector<std::uint8_t>> RequestForRestOfText(WireBytes response);

// The keys and values that data consists of, in order. Nothing where it is no such text.
struct TextKey {
    std::string_view key;
    std::string_view value;
};
std::optional<std::vector<TextKey>> ParseTextKeys(WireBytes data);

}  // namespace tavrolinux
