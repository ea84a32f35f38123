#include "twin/documents/schemas.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <nlohmann/json.hpp>
#include "library/json/json.h"

namespace tavrohost {
namespace {

TEST(Schemas, HoldThatOfTheHostFile) {
    const auto names = SchemaNames();
    EXPECT_NE(std::ranges::find(names, "host"), names.end());
}

TEST(Schemas, AreJsonWithATitle) {
    for (const std::string& name : SchemaNames()) {
        EXPECT_TRUE(tavrolib::ParseJson(SchemaText(name)).contains("title")) << name;
    }
}

// One piece of code writes both.
TEST(Schemas, OfARunAndARehearsalDescribeCallsAndChangesAlike) {
    const tavrolib::Json run = tavrolib::ParseJson(SchemaText("run"));
    const tavrolib::Json rehearsal = tavrolib::ParseJson(SchemaText("rehearsal"));
    for (const char* part : {"Call", "Change"}) {
        EXPECT_EQ(run.at("$defs").at(part), rehearsal.at("$defs").at(part)) << part;
    }
}

}  // namespace
}  // namespace tavrohost
