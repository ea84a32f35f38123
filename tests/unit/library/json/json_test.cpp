#include "library/json/json.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace tavrolib {
namespace {

std::string ParseRefusal(const std::string& text) {
    try {
        ParseJson(text);
        return "accepted";
    } catch (const ShapeError& error) {
        return error.what();
    }
}

TEST(Json, DocumentsAreReadAsTheyStand) {
    const std::string text =
        R"({"b":[1,-2,0.5,true,false,null,"t\u0003","日"],"a":{},"c":[[],{"d":[{}]}],"e":18446744073709551615})";
    EXPECT_EQ(LineOf(ParseJson(text)), text);
    EXPECT_EQ(LineOf(ParseJson(" 7\n")), "7");
}

TEST(Json, ErrorsNameLineAndColumn) {
    EXPECT_EQ(ParseRefusal("{\n  \"a\": 1,\n  \"b\" 2\n}"), "line 3, column 7: a syntax error");
    EXPECT_EQ(ParseRefusal("{\n  \"a\": 1"), "line 2, column 9: the text ends too early");
    EXPECT_EQ(ParseRefusal(""), "line 1, column 1: the text ends too early");
    EXPECT_EQ(ParseRefusal("\"\xFF\""), "line 1, column 2: a syntax error");
    EXPECT_EQ(ParseRefusal(std::string("\0\0\0\0", 4)), "line 1, column 1: a syntax error");
    EXPECT_EQ(ParseRefusal("[1, 1e999]"), "line 1, column 9: the number is too large");
    EXPECT_EQ(ParseRefusal("[] []"), "line 1, column 4: a syntax error");
}

TEST(Json, AMemberThatStandsTwiceIsRefused) {
    EXPECT_EQ(ParseRefusal(R"({"a": {"b": 1, "b": 2}})"),
              "line 1, column 18: this member stands twice in its object");
    EXPECT_EQ(ParseRefusal("{\"a\": 1,\n \"\\u0061\": 2}"),
              "line 2, column 9: this member stands twice in its object");
    EXPECT_EQ(ParseRefusal(R"({"a": {"b": 1}, "b": [{"a": 1}, {"a": 2}]})"), "accepted");
}

TEST(Json, NestingHasAnEnd) {
    const auto nested = [](std::size_t depth) {
        return std::string(depth, '[') + std::string(depth, ']');
    };
    EXPECT_EQ(ParseRefusal(nested(64)), "accepted");
    EXPECT_EQ(ParseRefusal(nested(65)), "line 1, column 65: nested too deeply");
    EXPECT_EQ(ParseRefusal(std::string(1000000, '[')), "line 1, column 65: nested too deeply");
    EXPECT_EQ(ParseRefusal("[" + nested(63) + "," + nested(63) + "]"), "accepted");
}

TEST(Json, NothingOfTheDocumentStandsInAnError) {
    const std::string excerpt = "excerpt";
    const std::string digits(1000000, '7');
    for (const std::string& text :
         {"{\"" + excerpt + "\"", "{\"" + excerpt + "\n\": 1}", "\"" + excerpt,
          "[\"" + excerpt + "\x01", "[" + excerpt,
          "{\"" + excerpt + "\": 1, \"" + excerpt + "\": 2}", "[\"" + excerpt + "\\q\"]",
          "[\"" + excerpt + "\xFF\"]", digits, "[" + digits + "]", "-" + digits, digits + "x"}) {
        const std::string refusal = ParseRefusal(text);
        EXPECT_NE(refusal, "accepted");
        EXPECT_EQ(refusal.substr(0, 5), "line ");
        EXPECT_LT(refusal.size(), 80U);
        EXPECT_EQ(refusal.find(excerpt), std::string::npos) << refusal;
        EXPECT_EQ(refusal.find("77"), std::string::npos) << refusal;
    }
}

TEST(Json, AnUnknownMemberIsToldByItsNumber) {
    const auto isKnown = [](std::string_view name) { return name == "a" || name == "b"; };
    const auto refusal = [&isKnown](const char* text) -> std::string {
        try {
            const Place root;
            RefuseUnknownMembers(ParseJson(text), isKnown, Place(root, "here"));
            return "accepted";
        } catch (const ShapeError& error) {
            return error.what();
        }
    };
    EXPECT_EQ(refusal(R"({"b": 1, "a": 2})"), "accepted");
    EXPECT_EQ(refusal(R"({"b": 1, "c": 2, "d": 3})"), "here: member 2 is unknown");
    EXPECT_EQ(refusal("[]"), "here: an object is wanted, not an array");
}

}  // namespace
}  // namespace tavrolib
