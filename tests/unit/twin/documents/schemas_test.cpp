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

}  // namespace
}  // namespace tavrohost
