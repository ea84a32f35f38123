#include "tavroapi/iscsi_storage_records.h"
#include "unit/tavroapi/field_names.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace tavroapi {
namespace {

using tavroapi_test::FieldNames;
using tavroapi_test::Names;

std::uintptr_t AddressOf(const void* object) {
    return reinterpret_cast<std::uintptr_t>(object);
}

void ExpectPackedAndAligned(const TargetLoginRecord& record) {
    const std::uintptr_t start = AddressOf(&record);
    const std::uintptr_t text = sizeof(std::string);
    EXPECT_EQ(AddressOf(&record.confirmedNew), start);
    EXPECT_EQ(AddressOf(&record.text2), start + 1);
    EXPECT_EQ(AddressOf(&record.targetName), start + 1 + text);
    EXPECT_EQ(AddressOf(&record.text4), start + 1 + 2 * text);
    EXPECT_EQ(AddressOf(&record.portalAddress), start + 1 + 3 * text);
    EXPECT_EQ(AddressOf(&record.portalPort), start + 1 + 4 * text);
    EXPECT_EQ(AddressOf(&record.login), start + 1 + 5 * text);
    EXPECT_EQ(AddressOf(&record.text2) % alignof(std::string), 0U);
}

TEST(TargetLoginRecord, IsPackedAndItsTextsAreAlignedWhereverItIsPlaced) {
    const PlacedTargetLogin onStack;
    ExpectPackedAndAligned(onStack.record);
    const auto onHeap = std::make_unique<PlacedTargetLogin>();
    ExpectPackedAndAligned(onHeap->record);
    const std::vector<PlacedTargetLogin> several(3);
    for (const PlacedTargetLogin& place : several) {
        ExpectPackedAndAligned(place.record);
    }
}

TEST(TargetLoginRecord, FieldsAreReachedThroughTheirList) {
    PlacedTargetLogin place;
    std::vector<std::string> names;
    ForEachField(place.record, [&](std::size_t position, std::string_view name, auto& value) {
        names.emplace_back(name);
        if constexpr (std::is_same_v<std::remove_reference_t<decltype(value)>, std::string>) {
            value = "text " + std::to_string(position);
        }
    });
    EXPECT_EQ(names, (std::vector<std::string>{"confirmedNew", "text2", "targetName", "text4",
                                               "portalAddress", "portalPort", "login"}));
    EXPECT_EQ(place.record.text2, "text 1");
    EXPECT_EQ(place.record.portalPort, "text 5");
}

TEST(IscsiStorageRecords, KeepTheirOrder) {
    EXPECT_EQ(FieldNames<PortalEntry>(), (Names{"address", "port"}));
    EXPECT_EQ(FieldNames<PortalRecord>(), (Names{"address", "port", "login"}));
    EXPECT_EQ(FieldNames<TargetRecord>(),
              (Names{"name", "text2", "text3", "portalAddress", "portalPort", "text6", "text7"}));
    EXPECT_EQ(FieldNames<LogoutRecord>(), (Names{"targetName", "sessionIds"}));
    EXPECT_EQ(FieldCount<SessionRecord>(), 41U);
    EXPECT_EQ(FieldCount<LunRecord>(), 7U);
    EXPECT_EQ(FieldCount<IscsiPortRecord>(), 22U);
    EXPECT_EQ(FieldCount<IscsiParameterRecord>(), 14U);
}

}  // namespace
}  // namespace tavroapi
