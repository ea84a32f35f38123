#include "linux/iscsi/login_answer.h"

#include <algorithm>
#include <string_view>

namespace tavrolinux {
namespace {

constexpr std::size_t HeaderSize = 48;
constexpr std::size_t WordSize = 4;
constexpr std::size_t LongestLoginData = std::size_t{64} << 10;
constexpr std::uint8_t OpcodeMask = 0x3F;
constexpr std::uint8_t LoginResponse = 0x23;

// Where the header has what.
constexpr std::size_t ExtraWordsAt = 4;
constexpr std::size_t DataSizeAt = 5;
constexpr std::size_t StatusAt = 36;

std::size_t DataSizeOf(WireBytes header) {
    return std::size_t{header[DataSizeAt]} << 16U | std::size_t{header[DataSizeAt + 1]} << 8U |
           header[DataSizeAt + 2];
}

std::size_t DataStartOf(WireBytes header) {
    return HeaderSize + WordSize * header[ExtraWordsAt];
}

}  // namespace

std::optional<std::size_t> LoginAnswerSize(WireBytes bytes) {
    if (bytes.empty()) {
        return 0;
    }
    if ((bytes[0] & OpcodeMask) != LoginResponse) {
        return std::nullopt;
    }
    if (bytes.size() < HeaderSize) {
        return 0;
    }
    const std::size_t data = DataSizeOf(bytes);
    if (data > LongestLoginData) {
        return std::nullopt;
    }
    return DataStartOf(bytes) + (data + WordSize - 1) / WordSize * WordSize;
}

LoginAnswer ParseLoginAnswer(WireBytes bytes) {
    LoginAnswer answer;
    if (bytes.size() < HeaderSize) {
        return answer;
    }
    answer.status = static_cast<std::uint16_t>(bytes[StatusAt] << 8U | bytes[StatusAt + 1]);
    const std::size_t start = std::min(DataStartOf(bytes), bytes.size());
    WireBytes data = bytes.subspan(start, std::min(DataSizeOf(bytes), bytes.size() - start));
    constexpr std::string_view Proof = "CHAP_R=";
    while (!data.empty()) {
        const auto end = std::ranges::find(data, std::uint8_t{0});
        const auto size = static_cast<std::size_t>(end - data.begin());
        answer.provesTarget |=
            size > Proof.size() && std::equal(Proof.begin(), Proof.end(), data.begin());
        data = data.subspan(std::min(data.size(), size + 1));
    }
    return answer;
}

}  // namespace tavrolinux
