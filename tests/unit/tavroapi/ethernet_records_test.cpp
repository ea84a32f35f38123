#include "tavroapi/ethernet_records.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace tavroapi {
namespace {

TEST(EthernetRecords, PortInfoIs33TextsOfWhichNumber27IsWide) {
    EXPECT_EQ(FieldCount<EthernetPortInfo>(), 33U);
    std::vector<std::size_t> widePositions;
    EthernetPortInfo info;
    ForEachField(info, [&](std::size_t position, std::string_view, auto& text) {
        if constexpr (std::is_same_v<std::remove_reference_t<decltype(text)>, std::wstring>) {
            widePositions.push_back(position);
        } else {
            text = std::to_string(position);
        }
    });
    EXPECT_EQ(widePositions, std::vector<std::size_t>{27});
    EXPECT_EQ(info.texts0To26.at(26), "26");
    EXPECT_EQ(info.texts28To32.at(0), "28");
    EXPECT_EQ(info.texts28To32.at(4), "32");
}

TEST(EthernetRecords, StatisticsAre37Texts) {
    EXPECT_EQ(FieldCount<EthernetPortStatistics>(), 37U);
}

TEST(EthernetRecords, SettingsAre31DescriptorsAndNothingElse) {
    EXPECT_EQ(FieldCount<AdapterSettings>(), 31U);
    AdapterSettings settings;
    ForEachField(settings, [](std::size_t, std::string_view, auto& setting) {
        EXPECT_TRUE((std::is_same_v<std::remove_reference_t<decltype(setting)>, AdapterSetting>));
    });
}

TEST(EthernetRecords, DescriptorFieldsKeepTheirOrder) {
    std::vector<std::string> names;
    AdapterSetting setting;
    ForEachField(setting,
                 [&](std::size_t, std::string_view name, auto&) { names.emplace_back(name); });
    EXPECT_EQ(names, (std::vector<std::string>{"libraryNumber", "value", "libraryText", "choices",
                                               "changed"}));
}

}  // namespace
}  // namespace tavroapi
