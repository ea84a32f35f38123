#include "simulator/answers/merge.h"

#include <gtest/gtest.h>

#include "unit/library/sample_records.h"

namespace tavrosim {
namespace {

using tavroapi::FcoeTargetRecord;
using tavroapi::FunctionAddress;
using tavroapi::OperationCode;
using tavroapi::TargetRecord;
using tavrolib_test::Inner;
using tavrolib_test::Outer;
using tavrolib_test::SampleOuter;
using Texts = std::list<std::string>;

// The sample's list is known by its first text.
struct SampleKeys : ElementKeys {
    using ElementKeys::Of;
    static ElementKey Of(const Inner& inner) { return {inner.first, {}}; }
};

template <class T>
T Merge(const T& captured, const T& before, const T& now) {
    return Merged<SampleKeys>(captured, before, now);
}

Texts MergeTexts(const Texts& captured, const Texts& before, const Texts& now) {
    return Merge(captured, before, now);
}

TEST(Merge, AValueOnWhichBothModelsAgreeIsTheCapturedOne) {
    EXPECT_EQ(Merge<std::string>("captured", "model", "model"), "captured");
    EXPECT_EQ(Merge<std::wstring>(L"captured", L"model", L"model"), L"captured");
    EXPECT_EQ(Merge<std::uint32_t>(7, 1, 1), 7U);
}

TEST(Merge, AValueThatChangedIsTheOneNow) {
    EXPECT_EQ(Merge<std::string>("captured", "model", "changed"), "changed");
    EXPECT_EQ(Merge<std::wstring>(L"captured", L"model", L"changed"), L"changed");
    EXPECT_EQ(Merge<std::uint32_t>(7, 1, 2), 2U);
    EXPECT_EQ(Merge<std::string>("captured", "model", "captured"), "captured");
}

TEST(Merge, ARecordIsMergedPositionByPosition) {
    Outer captured = SampleOuter();
    captured.text = "odd text";
    captured.nested = {"odd 1", "odd 2"};
    captured.inner = {"odd first", "odd second"};
    const Outer before = SampleOuter();
    Outer now = before;
    now.flag = 1;
    now.spread[1] = "changed";
    now.nested[0] = "changed";
    now.inner.secret = "changed";
    const Outer merged = Merge(captured, before, now);
    EXPECT_EQ(merged.text, "odd text");
    EXPECT_EQ(merged.wide, L"w\u65e5");
    EXPECT_EQ(merged.flag, 1);
    EXPECT_EQ(merged.result, -7);
    EXPECT_EQ(merged.spread, (std::array<std::string, 2>{"s1", "changed"}));
    EXPECT_EQ(merged.nested, (std::array<std::string, 2>{"changed", "odd 2"}));
    EXPECT_EQ(merged.inner.first, "odd first");
    EXPECT_EQ(merged.inner.secret, "changed");
    EXPECT_EQ(merged.list.front().secret, "hush");
    EXPECT_EQ(merged.map, captured.map);
}

TEST(Merge, AListOnWhichBothModelsAgreeIsTheCapturedOneAsItStands) {
    const Texts captured{"b", "a", "b", "", "?"};
    EXPECT_EQ(MergeTexts(captured, {"a", "b"}, {"a", "b"}), captured);
    EXPECT_EQ(MergeTexts(captured, {}, {}), captured);
}

TEST(Merge, AListThatChangedHasTheOrderOfTheModelNow) {
    EXPECT_EQ(MergeTexts({"a", "b", "c"}, {"c", "a", "b"}, {"c", "b", "a"}),
              (Texts{"c", "b", "a"}));
}

TEST(Merge, AnElementThatTheModelLostIsGoneAndANewOneIsThere) {
    EXPECT_EQ(MergeTexts({"a", "b"}, {"a", "b"}, {"b", "c"}), (Texts{"b", "c"}));
    EXPECT_EQ(MergeTexts({"a", "b"}, {"a", "b"}, {}), Texts{});
    EXPECT_EQ(MergeTexts({}, {}, {"c"}), (Texts{"c"}));
}

TEST(Merge, AnElementThatNoModelKnowsStaysAtItsPlace) {
    EXPECT_EQ(MergeTexts({"x", "a", "y", "z", "b"}, {"a", "b"}, {"a", "b", "c"}),
              (Texts{"x", "a", "y", "z", "b", "c"}));
    EXPECT_EQ(MergeTexts({"a", "x", "b"}, {"a", "b"}, {"b"}), (Texts{"x", "b"}));
    EXPECT_EQ(MergeTexts({"a", "b", "x"}, {"a", "b"}, {"c", "a"}), (Texts{"c", "a", "x"}));
}

TEST(Merge, AnElementThatWasNotCapturedIsToldOnceItChanges) {
    const std::list<Inner> before{{"a", "1"}, {"b", "1"}};
    std::list<Inner> now{{"a", "1"}, {"b", "1"}, {"c", "1"}};
    EXPECT_EQ(Merge({}, before, now).size(), 1U);
    now.front().secret = "2";
    const std::list<Inner> merged = Merge({}, before, now);
    ASSERT_EQ(merged.size(), 2U);
    EXPECT_EQ(merged.front().first, "a");
    EXPECT_EQ(merged.front().secret, "2");
    EXPECT_EQ(merged.back().first, "c");
}

TEST(Merge, AnElementIsMergedWithTheOnesOfItsKey) {
    const std::list<Inner> captured{{"b", "odd"}, {"a", "odd"}};
    const std::list<Inner> before{{"a", "1"}, {"b", "1"}};
    const std::list<Inner> now{{"a", "2"}, {"b", "1"}};
    const std::list<Inner> merged = Merge(captured, before, now);
    ASSERT_EQ(merged.size(), 2U);
    EXPECT_EQ(merged.front().first, "a");
    EXPECT_EQ(merged.front().secret, "2");
    EXPECT_EQ(merged.back().secret, "odd");
}

TEST(Merge, ElementsOfOneNameAreToldApartByTheirDetail) {
    const auto target = [](const char* address, const char* state) {
        return TargetRecord{.name = "iqn.example:t",
                            .alias = {},
                            .connectionState = state,
                            .portalAddress = address,
                            .portalPort = "3260",
                            .discovery = {},
                            .portalGroup = {}};
    };
    const std::list<TargetRecord> captured{target("192.0.2.1", "odd 1"),
                                           target("192.0.2.2", "odd 2")};
    const std::list<TargetRecord> before{target("192.0.2.1", "no"), target("192.0.2.2", "no")};
    const std::list<TargetRecord> now{target("192.0.2.2", "no")};
    const std::list<TargetRecord> merged = Merge(captured, before, now);
    ASSERT_EQ(merged.size(), 1U);
    EXPECT_EQ(merged.front().portalAddress, "192.0.2.2");
    EXPECT_EQ(merged.front().connectionState, "odd 2");
}

TEST(Merge, ADetailAloneMakesNoOtherElement) {
    TargetRecord target;
    target.name = "iqn.example:t";
    target.portalAddress = "192.0.2.1";
    TargetRecord odd = target;
    odd.alias = "odd";
    TargetRecord moved = target;
    moved.portalAddress = "192.0.2.2";
    const std::list<TargetRecord> merged =
        Merge(std::list{odd}, std::list{target}, std::list{moved});
    ASSERT_EQ(merged.size(), 1U);
    EXPECT_EQ(merged.front().alias, "odd");
    EXPECT_EQ(merged.front().portalAddress, "192.0.2.2");
}

TEST(Merge, ElementsThatAreAlikeAreCounted) {
    EXPECT_EQ(MergeTexts({"a", "a", "a"}, {"a", "a"}, {"a", "a", "b"}),
              (Texts{"a", "a", "a", "b"}));
    EXPECT_EQ(MergeTexts({"a", "a"}, {"a", "a"}, {"a"}), (Texts{"a"}));
}

TEST(Merge, HowAnIdentifierIsWrittenMakesNoOtherElement) {
    const std::list<FunctionAddress> captured{{"02:00:5e:10:00:00", "odd", 0}};
    const std::list<FunctionAddress> before{{"02-00-5E-10-00-00", "a", 0}};
    const std::list<FunctionAddress> now{{"02-00-5E-10-00-00", "a", 4}};
    const std::list<FunctionAddress> merged = Merge(captured, before, now);
    ASSERT_EQ(merged.size(), 1U);
    EXPECT_EQ(merged.front().keyText, "02:00:5e:10:00:00");
    EXPECT_EQ(merged.front().addressText, "odd");
    EXPECT_EQ(merged.front().functionNumber, 4U);
}

TEST(Merge, TheOperationTellsWhatElementsOfOneTypeAreKnownBy) {
    FcoeTargetRecord record;
    record.texts[tavroapi::fcoe_target::PortWwn] = "20:00:02:00:5E:20:00:01";
    record.texts[tavroapi::fcoe_lun::Item] = "5";
    EXPECT_EQ(ElementKeysOf<OperationCode::ListFcoeTargets>::Of(record).name, "200002005e200001");
    EXPECT_EQ(ElementKeysOf<OperationCode::ListFcoeLuns>::Of(record).name, "5");
}

TEST(Merge, AMapIsMergedByItsKeys) {
    using Choices = std::map<std::int32_t, std::wstring>;
    const Choices captured{{1, L"odd 1"}, {2, L"odd 2"}, {9, L"unknown"}};
    const Choices before{{1, L"one"}, {2, L"two"}, {3, L"three"}};
    EXPECT_EQ(Merge(captured, before, before), captured);
    const Choices now{{1, L"changed"}, {3, L"three"}, {4, L"new"}};
    EXPECT_EQ(Merge(captured, before, now),
              (Choices{{1, L"changed"}, {4, L"new"}, {9, L"unknown"}}));
    const Choices untold{{1, L"one"}, {2, L"two"}, {3, L"changed"}};
    EXPECT_EQ(Merge(captured, before, untold),
              (Choices{{1, L"odd 1"}, {2, L"odd 2"}, {3, L"changed"}, {9, L"unknown"}}));
}

}  // namespace
}  // namespace tavrosim
