#include "library/json/findings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tavrolib {
namespace {

using Texts = std::vector<std::string>;

Texts TextsOf(const std::vector<ShapeError>& errors) {
    Texts texts;
    for (const ShapeError& error : errors) {
        texts.emplace_back(error.what());
    }
    return texts;
}

TEST(Findings, ThrowTheFirstUnlessTheyAreCollected) {
    Findings first;
    const Place root;
    EXPECT_TRUE(first.Pass([] {}));
    EXPECT_THROW(first.Add(Place(root, "a"), "wrong"), ShapeError);
    EXPECT_THROW(first.Pass([] { throw ShapeError("wrong"); }), ShapeError);
}

TEST(Findings, AreCollectedInTheirOrder) {
    std::vector<ShapeError> collected;
    Findings findings(collected);
    const Place root;
    findings.Add(Place(root, "a"), "one");
    EXPECT_FALSE(findings.Pass([] { throw ShapeError("two"); }));
    EXPECT_TRUE(findings.Pass([] {}));
    EXPECT_EQ(TextsOf(collected), (Texts{"a: one", "two"}));
}

TEST(Findings, AreNoneBelowWhatCouldNotBeRead) {
    std::vector<ShapeError> collected;
    Findings findings(collected);
    const Place root;
    const Place list(root, "list");
    const Place element(list, std::size_t{1});
    EXPECT_FALSE(findings.PassReading(element, [&] { throw ShapeError(element, "wrong"); }));
    findings.Add(element, "at the place");
    findings.Add(Place(element, "name"), "below it");
    findings.Add(list, "above it");
    findings.Add(Place(list, std::size_t{10}), "beside it");
    findings.Add(Place(root, "list2"), "elsewhere");
    EXPECT_EQ(TextsOf(collected), (Texts{"list[1]: wrong", "list: above it", "list[10]: beside it",
                                         "list2: elsewhere"}));
}

TEST(Findings, KnowWhatIsReadable) {
    std::vector<ShapeError> collected;
    Findings findings(collected);
    const Place root;
    const Place list(root, "list");
    const Place element(list, std::size_t{1});
    EXPECT_TRUE(findings.IsReadable(root));
    EXPECT_TRUE(findings.IsReadable(element));
    findings.MarkUnreadable(element);
    EXPECT_FALSE(findings.IsReadable(element));
    EXPECT_FALSE(findings.IsReadable(Place(element, "below")));
    EXPECT_FALSE(findings.IsReadable(list));
    EXPECT_FALSE(findings.IsReadable(root));
    EXPECT_TRUE(findings.IsReadable(Place(list, std::size_t{10})));
    EXPECT_TRUE(findings.IsReadable(Place(list, std::size_t{0})));
    EXPECT_TRUE(findings.IsReadable(Place(root, "list2")));
    EXPECT_TRUE(findings.IsReadable(Place(root, "lis")));
}

TEST(ShapeError, TellsThePlaceAndTheReasonApart) {
    const Place root;
    const ShapeError placed(Place(root, "a"), "b: c");
    EXPECT_EQ(placed.PlaceText(), "a");
    EXPECT_EQ(placed.Reason(), "b: c");
    const ShapeError whole(root, "b: c");
    EXPECT_EQ(whole.PlaceText(), "");
    EXPECT_EQ(whole.Reason(), "b: c");
    const ShapeError spoken("line 1, column 2", "b");
    EXPECT_STREQ(spoken.what(), "line 1, column 2: b");
    EXPECT_EQ(spoken.PlaceText(), "line 1, column 2");
}

}  // namespace
}  // namespace tavrolib
