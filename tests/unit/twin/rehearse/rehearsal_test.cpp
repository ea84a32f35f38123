#include "twin/rehearse/rehearsal.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace tavrohost {
namespace {

using tavrolib::Json;

TEST(ChangesJson, NamesTheLevelsThatAChangeLiesIn) {
    using Level = HostPart::Level;
    Change change;
    change.kind = Change::Kind::Removed;
    const auto json = [&](HostPart where) {
        change.where = std::move(where);
        return ChangesJson({change});
    };
    const auto removed = [](const Json& names) {
        Json entry = {{"kind", "removed"}};
        entry.update(names);
        return Json::array({entry});
    };
    EXPECT_EQ(json({{}, {}, {}, {}, "name", Level::Host}), removed({{"member", "name"}}));
    EXPECT_EQ(json({"A", {}, {}, {}, {}, Level::Adapter}), removed({{"adapter", "A"}}));
    // Adapters and ports can have empty names.
    EXPECT_EQ(json({"A", {}, {}, {}, {}, Level::Port}), removed({{"adapter", "A"}, {"port", ""}}));
    EXPECT_EQ(json({{}, {}, {}, {}, {}, Level::Adapter}), removed({{"adapter", ""}}));
}

}  // namespace
}  // namespace tavrohost
