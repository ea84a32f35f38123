#include "fcoe/dcb_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavro {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(DcbItems, AreThePiecesBetweenCommas) {
    EXPECT_THAT(ItemsOf("one"), ElementsAre("one"));
    EXPECT_THAT(ItemsOf("0:1,1:2 3, 4"), ElementsAre("0:1", "1:2 3", " 4"));
}

TEST(DcbItems, EmptyPiecesAreItemsButAnEmptyTextHasNone) {
    EXPECT_THAT(ItemsOf(""), IsEmpty());
    EXPECT_THAT(ItemsOf(","), ElementsAre("", ""));
    EXPECT_THAT(ItemsOf("a,,b,"), ElementsAre("a", "", "b", ""));
}

void ExpectCut(std::string_view item, std::string_view key, std::string_view values) {
    const MapItem cut = CutItem(item);
    EXPECT_EQ(cut.key, key) << item;
    EXPECT_EQ(cut.values, values) << item;
}

TEST(DcbItems, AreCutAtTheirFirstColon) {
    ExpectCut("0:1 2", "0", "1 2");
    ExpectCut("0:1:2", "0", "1:2");
    ExpectCut(":1", "", "1");
    ExpectCut("1:", "1", "");
    ExpectCut("none", "none", "");
    ExpectCut("", "", "");
}

TEST(DcbBandwidths, KeepWhatFollowsTheFirstColon) {
    EXPECT_EQ(JoinedBandwidths("0:50,1:30,2:1:2"), "50,30,1:2");
}

TEST(DcbBandwidths, AnItemWithoutAColonIsKeptWhole) {
    EXPECT_EQ(JoinedBandwidths("50,1:30"), "50,30");
}

TEST(DcbBandwidths, EmptyOnesAreLeftOut) {
    EXPECT_EQ(JoinedBandwidths(""), "");
    EXPECT_EQ(JoinedBandwidths("0:,1:30,,2:,3:5,"), "30,5");
}

TEST(DcbBandwidths, OnlyTheFirstFiftyItemsCount) {
    std::string list;
    std::string fifty;
    for (int i = 1; i <= 51; ++i) {
        list += (i == 1 ? "g:" : ",g:") + std::to_string(i);
        if (i <= 50) {
            fifty += (i == 1 ? "" : ",") + std::to_string(i);
        }
    }
    EXPECT_EQ(JoinedBandwidths(list), fifty);
    // An item without a bandwidth is one of the fifty all the same.
    EXPECT_EQ(JoinedBandwidths("g:," + list), fifty.substr(0, fifty.size() - 3));
}

TEST(DcbPriorityList, EveryCommaBecomesABlank) {
    EXPECT_EQ(PriorityListFromAnswer("3,4"), "3 4");
    EXPECT_EQ(PriorityListFromAnswer(",3,,4,"), " 3  4 ");
}

TEST(DcbPriorityMap, KeysGetTheirCommaBack) {
    EXPECT_EQ(PriorityMapFromAnswer("0:1,1:2"), "0:1,1:2");
    EXPECT_EQ(PriorityMapFromAnswer("0:1 1:2"), "0:1,1:2");
    EXPECT_EQ(PriorityMapFromAnswer("0:1,2,1:3,4"), "0:1 2,1:3 4");
}

TEST(DcbPriorityMap, AColonAmongTheFirstThreeCharactersChangesNothing) {
    EXPECT_EQ(PriorityMapFromAnswer(""), "");
    EXPECT_EQ(PriorityMapFromAnswer(":::"), ":::");
    EXPECT_EQ(PriorityMapFromAnswer("12:3"), "12:3");
}

TEST(DcbPriorityMap, TheCharacterTwoPlacesBeforeAColonIsReplacedWhateverItIs) {
    EXPECT_EQ(PriorityMapFromAnswer("123:4"), "1,3:4");
    EXPECT_EQ(PriorityMapFromAnswer("a:b:c"), "a,b:c");
    EXPECT_EQ(PriorityMapFromAnswer(":::::"), ":,,::");
}

}  // namespace
}  // namespace tavro
