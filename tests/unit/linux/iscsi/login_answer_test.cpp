#include "linux/iscsi/login_answer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace tavrolinux {
namespace {

using testing::Optional;
using namespace std::string_view_literals;

constexpr std::uint8_t LoginResponse = 0x23;

// A login response as the protocol lays it out.
std::vector<std::uint8_t> Answer(std::uint16_t status, std::string_view data,
                                 std::uint8_t extraWords = 0) {
    std::vector<std::uint8_t> bytes(48);
    bytes[0] = LoginResponse;
    bytes[4] = extraWords;
    bytes[6] = static_cast<std::uint8_t>(data.size() >> 8U);
    bytes[7] = static_cast<std::uint8_t>(data.size() & 0xFFU);
    bytes[36] = static_cast<std::uint8_t>(status >> 8U);
    bytes[37] = static_cast<std::uint8_t>(status & 0xFFU);
    bytes.resize(bytes.size() + 4U * extraWords);
    bytes.insert(bytes.end(), data.begin(), data.end());
    bytes.resize((bytes.size() + 3) / 4 * 4);
    return bytes;
}

TEST(LoginAnswer, IsAsLongAsItsHeaderSays) {
    EXPECT_THAT(LoginAnswerSize(Answer(0, "")), Optional(48U));
    EXPECT_THAT(LoginAnswerSize(Answer(0, "A=1\0"sv)), Optional(52U));
    EXPECT_THAT(LoginAnswerSize(Answer(0, "AB=1\0"sv)), Optional(56U));
    EXPECT_THAT(LoginAnswerSize(Answer(0, "A=1\0"sv, 2)), Optional(60U));
}

TEST(LoginAnswer, HasNoSizeBeforeItsHeaderIsThere) {
    auto bytes = Answer(0, "");
    EXPECT_THAT(LoginAnswerSize({}), Optional(0U));
    bytes.pop_back();
    EXPECT_THAT(LoginAnswerSize(bytes), Optional(0U));
    bytes.resize(1);
    EXPECT_THAT(LoginAnswerSize(bytes), Optional(0U));
}

TEST(LoginAnswer, IsNothingElse) {
    const std::vector<std::uint8_t> text{'H', 'T', 'T', 'P'};
    EXPECT_EQ(LoginAnswerSize(text), std::nullopt);
    auto tooLong = Answer(0, "");
    tooLong[5] = 0xFF;
    EXPECT_EQ(LoginAnswerSize(tooLong), std::nullopt);
}

TEST(LoginAnswer, TellsItsStatus) {
    EXPECT_EQ(ParseLoginAnswer(Answer(0, "")).status, 0);
    EXPECT_EQ(ParseLoginAnswer(Answer(0x0203, "")).status, 0x0203);
}

TEST(LoginAnswer, ProvesTheTargetByItsAnswerToAChallenge) {
    EXPECT_TRUE(ParseLoginAnswer(Answer(0, "CHAP_N=a\0CHAP_R=0x12\0"sv)).provesTarget);
    EXPECT_TRUE(ParseLoginAnswer(Answer(0, "CHAP_R=0x12"sv, 1)).provesTarget);
    EXPECT_FALSE(ParseLoginAnswer(Answer(0, "CHAP_N=a\0CHAP_C=0x12\0"sv)).provesTarget);
    EXPECT_FALSE(ParseLoginAnswer(Answer(0, "CHAP_R=\0"sv)).provesTarget);
    EXPECT_FALSE(ParseLoginAnswer(Answer(0, "X=CHAP_R=0x12\0"sv)).provesTarget);
}

TEST(LoginAnswer, IsReadNoFurtherThanItGoes) {
    auto bytes = Answer(0x0201, "");
    bytes[7] = 200;
    EXPECT_EQ(ParseLoginAnswer(bytes).status, 0x0201);
    bytes[4] = 255;
    EXPECT_EQ(ParseLoginAnswer(bytes).status, 0x0201);
    bytes.resize(20);
    EXPECT_EQ(ParseLoginAnswer(bytes).status, 0);
}

}  // namespace
}  // namespace tavrolinux
