#include "tavroapi/record.h"

#include <gtest/gtest.h>

#include <vector>

#include "tavroapi/inventory_records.h"
#include "tavroapi/operations.h"
#include "unit/tavroapi/field_names.h"

namespace tavroapi {
namespace {

using tavroapi_test::FieldNames;
using tavroapi_test::Names;

struct Mixed {
    std::string first;
    std::array<std::string, 3> middle;
    std::int32_t last = 0;

    static constexpr std::array<std::size_t, 2> SecretPositions{2, 4};
    static constexpr auto Fields(auto visit) {
        return visit(Field{"first", &Mixed::first}, SpreadField{"middle", &Mixed::middle},
                     Field{"last", &Mixed::last});
    }
};

TEST(Record, FieldsAreVisitedInOrderWithSpreadArraysFlat) {
    Mixed record;
    std::vector<std::pair<std::size_t, std::string>> visited;
    ForEachField(record, [&](std::size_t position, std::string_view name, auto&) {
        visited.emplace_back(position, name);
    });
    EXPECT_EQ(visited,
              (std::vector<std::pair<std::size_t, std::string>>{
                  {0, "first"}, {1, "middle"}, {2, "middle"}, {3, "middle"}, {4, "last"}}));
    EXPECT_EQ(FieldCount<Mixed>(), 5U);
}

TEST(Record, FieldsCanBeWrittenThroughTheVisitor) {
    Mixed record;
    ForEachField(record, [](std::size_t position, std::string_view, auto& value) {
        if constexpr (std::is_same_v<std::remove_reference_t<decltype(value)>, std::string>) {
            value = std::to_string(position);
        } else {
            value = static_cast<std::int32_t>(position);
        }
    });
    EXPECT_EQ(record.first, "0");
    EXPECT_EQ(record.middle, (std::array<std::string, 3>{"1", "2", "3"}));
    EXPECT_EQ(record.last, 4);
}

TEST(Record, SecretPositionsAreThoseNamed) {
    EXPECT_FALSE(IsSecretPosition<Mixed>(0));
    EXPECT_TRUE(IsSecretPosition<Mixed>(2));
    EXPECT_TRUE(IsSecretPosition<Mixed>(4));
    EXPECT_FALSE(IsSecretPosition<AdapterRecord>(0));
    using Secretive = TextRecord<5, 3>;
    EXPECT_TRUE(IsSecretPosition<Secretive>(3));
    EXPECT_FALSE(IsSecretPosition<Secretive>(4));
}

TEST(Record, TextRecordIsASpreadArray) {
    EXPECT_EQ(FieldCount<TextRecord<22>>(), 22U);
}

TEST(Record, ContractRecordsKeepTheirOrder) {
    EXPECT_EQ(FieldNames<ErrorRecord>(),
              (Names{"code", "message", "action", "additional", "details"}));
    EXPECT_EQ(FieldNames<AdapterRecord>(), (Names{"name", "number", "portNames"}));
    EXPECT_EQ(FieldNames<FunctionAddress>(), (Names{"keyText", "addressText", "functionNumber"}));
    EXPECT_EQ(FieldNames<FunctionIdentity>(), (Names{"keyText", "functionType", "secondText"}));
}

}  // namespace
}  // namespace tavroapi
