#include "linux/iscsi/pdu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrolinux {
namespace {

using testing::ElementsAre;

std::vector<std::uint8_t> TextResponse() {
    std::vector<std::uint8_t> response(PduHeaderSize);
    response[0] = 0x24;
    for (std::size_t place = 8; place < PduHeaderSize; ++place) {
        response[place] = static_cast<std::uint8_t>(place);
    }
    return response;
}

// The places of the fields are those of the protocol.
TEST(RestOfText, IsAskedForWithTheTagsOfTheResponse) {
    std::vector<std::uint8_t> response = TextResponse();
    response[24] = 0x00;
    response[25] = 0xFF;
    response[26] = 0xFF;
    response[27] = 0xFF;
    const auto request = RequestForRestOfText(response);
    ASSERT_TRUE(request);
    ASSERT_EQ(request->size(), PduHeaderSize);
    const std::vector<std::uint8_t> head(request->begin(), request->begin() + 8);
    EXPECT_THAT(head, ElementsAre(0x44, 0x80, 0, 0, 0, 0, 0, 0));
    EXPECT_TRUE(std::equal(request->begin() + 8, request->begin() + 24, response.begin() + 8));
    const std::vector<std::uint8_t> numbers(request->begin() + 24, request->begin() + 32);
    EXPECT_THAT(numbers, ElementsAre(28, 29, 30, 31, 0x01, 0x00, 0x00, 0x00));
    EXPECT_THAT(std::vector<std::uint8_t>(request->begin() + 32, request->end()), testing::Each(0));
}

TEST(RestOfText, CannotBeAskedForWithoutATag) {
    std::vector<std::uint8_t> response = TextResponse();
    std::fill_n(response.begin() + 20, 4, std::uint8_t{0xFF});
    EXPECT_FALSE(RequestForRestOfText(response));
}

}  // namespace
}  // namespace tavrolinux
