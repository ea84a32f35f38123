#include "library/records/record_json.h"

#include <gtest/gtest.h>

#include "unit/library/sample_records.h"

namespace tavrolib {
namespace {

using tavrolib_test::Inner;
using tavrolib_test::Outer;
using tavrolib_test::SampleOuter;

template <class T>
std::string Refusal(const char* json, T value = {}) {
    try {
        FillFromJson(ParseJson(json), value, Place());
        return "accepted";
    } catch (const ShapeError& error) {
        return error.what();
    }
}

TEST(RecordJson, EveryShapeStandsByPosition) {
    EXPECT_EQ(
        LineOf(ToJson(SampleOuter(), Secrets::Shown)),
        R"(["t","w日",255,-7,"s1","s2",["n1","n2"],["i","hush"],[["l","hush"]],[[-1,"one"],[2,"two"]]])");
}

TEST(RecordJson, SecretsAreHiddenAtEveryDepth) {
    EXPECT_EQ(
        LineOf(ToJson(SampleOuter(), Secrets::Hidden)),
        R"(["t","w日",255,-7,"s1","s2",["n1","n2"],["i","***"],[["l","***"]],[[-1,"one"],[2,"two"]]])");
}

TEST(RecordJson, AnEmptySecretIsHiddenToo) {
    EXPECT_EQ(LineOf(ToJson(Inner{}, Secrets::Hidden)), R"(["","***"])");
}

TEST(RecordJson, SecretsOfTextRecordsAreTheirPositions) {
    const tavroapi::TextRecord<3, 1> record{{"a", "b", "c"}};
    EXPECT_EQ(LineOf(ToJson(record, Secrets::Hidden)), R"(["a","***","c"])");
}

TEST(RecordJson, WhatWasWrittenFillsAnEqualRecord) {
    const Json json = ToJson(SampleOuter(), Secrets::Shown);
    Outer record;
    FillFromJson(json, record, Place());
    EXPECT_EQ(LineOf(ToJson(record, Secrets::Shown)), LineOf(json));
}

TEST(RecordJson, SingleValuesStandAsThemselves) {
    std::wstring wide;
    FillFromJson(ParseJson("\"6\""), wide, Place());
    EXPECT_EQ(wide, L"6");
    std::uint32_t number = 0;
    FillFromJson(ParseJson("4294967295"), number, Place());
    EXPECT_EQ(number, 4294967295U);
    EXPECT_EQ(LineOf(ToJson(std::uint8_t{1}, Secrets::Hidden)), "1");
}

TEST(RecordJson, FewerElementsLeaveTheRest) {
    Outer record = SampleOuter();
    FillFromJson(ParseJson(R"(["new", "wide", 1, 2, "spread"])"), record, Place());
    EXPECT_EQ(
        LineOf(ToJson(record, Secrets::Shown)),
        R"(["new","wide",1,2,"spread","s2",["n1","n2"],["i","hush"],[["l","hush"]],[[-1,"one"],[2,"two"]]])");
    FillFromJson(ParseJson(R"(["t", "w", 0, 0, "", "", ["first"], ["inner"], [["x"], []]])"),
                 record, Place());
    EXPECT_EQ(
        LineOf(ToJson(record, Secrets::Shown)),
        R"(["t","w",0,0,"","",["first","n2"],["inner","hush"],[["x",""],["",""]],[[-1,"one"],[2,"two"]]])");
}

TEST(RecordJson, ListsAndMapsAreReplaced) {
    std::list<std::string> texts{"old", "older"};
    FillFromJson(ParseJson(R"(["new"])"), texts, Place());
    EXPECT_EQ(texts, std::list<std::string>{"new"});
    std::map<std::int32_t, std::wstring> map{{1, L"old"}};
    FillFromJson(ParseJson("[]"), map, Place());
    EXPECT_TRUE(map.empty());
}

TEST(RecordJson, RefusalsNameThePlace) {
    EXPECT_EQ(Refusal<std::string>("1"), "a text is wanted, not a number");
    EXPECT_EQ(Refusal<std::uint32_t>("\"1\""), "a number is wanted, not a text");
    EXPECT_EQ(Refusal<std::uint8_t>("256"), "a whole number from 0 to 255 is wanted");
    EXPECT_EQ(Refusal<std::uint8_t>("-1"), "a whole number from 0 to 255 is wanted");
    EXPECT_EQ(Refusal<std::uint32_t>("1.5"), "a whole number from 0 to 4294967295 is wanted");
    EXPECT_EQ(Refusal<std::uint32_t>("18446744073709551615"),
              "a whole number from 0 to 4294967295 is wanted");
    EXPECT_EQ(Refusal<Inner>("{}"), "an array is wanted, not an object");
    EXPECT_EQ(Refusal<Inner>(R"(["a", "b", "c"])"), "at most 2 elements are wanted, not 3");
    EXPECT_EQ(Refusal<std::list<Inner>>(R"([["a"], ["a", null]])"),
              "[1][1]: a text is wanted, not null");
    EXPECT_EQ(Refusal<Outer>(R"(["", "", 0, 0, "", "", ["", "", ""]])"),
              "[6]: at most 2 elements are wanted, not 3");
    EXPECT_EQ((Refusal<std::map<std::int32_t, std::wstring>>("[[1]]")),
              "[0]: a key and a value are wanted");
}

}  // namespace
}  // namespace tavrolib
