#include "linux/iscsi/md5.h"

#include <string.h>  // NOLINT(modernize-deprecated-headers): explicit_bzero is not the standard's

#include <algorithm>
#include <bit>
#include <cmath>

namespace tavrolinux {
namespace {

constexpr std::size_t BlockSize = 64;
constexpr std::size_t LengthSize = 8;
constexpr unsigned Steps = 64;

using Md5State = std::array<std::uint32_t, 4>;
using Md5Block = std::array<std::uint8_t, BlockSize>;

// The constant of each step is the sine of its number.
std::array<std::uint32_t, Steps> SineTable() {
    std::array<std::uint32_t, Steps> table{};
    for (unsigned step = 0; step < Steps; ++step) {
        constexpr double Scale = 4294967296.0;
        table[step] = static_cast<std::uint32_t>(std::floor(Scale * std::fabs(std::sin(step + 1))));
    }
    return table;
}

std::uint32_t LittleEndianAt(const Md5Block& block, std::size_t position) {
    return block[position] | std::uint32_t{block[position + 1]} << 8U |
           std::uint32_t{block[position + 2]} << 16U | std::uint32_t{block[position + 3]} << 24U;
}

void TakeBlock(Md5State& state, const Md5Block& block) {
    static const std::array<std::uint32_t, Steps> Sines = SineTable();
    constexpr std::array<std::array<int, 4>, 4> Turns{
        {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}}};
    auto [a, b, c, d] = state;
    for (unsigned step = 0; step < Steps; ++step) {
        const unsigned round = step / 16;
        std::uint32_t mixed = 0;
        unsigned word = 0;
        switch (round) {
            case 0:
                mixed = (b & c) | (~b & d);
                word = step;
                break;
            case 1:
                mixed = (d & b) | (~d & c);
                word = 5 * step + 1;
                break;
            case 2:
                mixed = b ^ c ^ d;
                word = 3 * step + 5;
                break;
            default:
                mixed = c ^ (b | ~d);
                word = 7 * step;
                break;
        }
        const std::uint32_t sum =
            a + mixed + Sines[step] + LittleEndianAt(block, 4 * std::size_t{word % 16});
        a = d;
        d = c;
        c = b;
        b += std::rotl(sum, Turns[round][step % 4]);
    }
    state[0] += a;
    state[1] += b;
    state[2] += c;
    state[3] += d;
}

}  // namespace

Md5Digest Md5(std::span<const std::uint8_t> bytes) {
    Md5State state{0x67452301U, 0xEFCDAB89U, 0x98BADCFEU, 0x10325476U};
    const std::uint64_t bits = 8 * std::uint64_t{bytes.size()};
    Md5Block block{};
    bool isEnded = false;  // the byte behind the message is in
    for (bool isLast = false; !isLast;) {
        const std::size_t size = std::min(bytes.size(), BlockSize);
        block.fill(0);
        std::copy_n(bytes.begin(), size, block.begin());
        bytes = bytes.subspan(size);
        if (size < BlockSize && !isEnded) {
            block[size] = 0x80;
            isEnded = true;
            isLast = size < BlockSize - LengthSize;
        } else {
            isLast = isEnded;
        }
        for (std::size_t byte = 0; isLast && byte < LengthSize; ++byte) {
            block[BlockSize - LengthSize + byte] = static_cast<std::uint8_t>(bits >> 8 * byte);
        }
        TakeBlock(state, block);
    }
    explicit_bzero(block.data(), block.size());
    Md5Digest digest{};
    for (std::size_t byte = 0; byte < digest.size(); ++byte) {
        digest[byte] = static_cast<std::uint8_t>(state[byte / 4] >> 8 * (byte % 4));
    }
    return digest;
}

}  // namespace tavrolinux
