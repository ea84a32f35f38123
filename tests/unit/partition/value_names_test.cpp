#include "partition/value_names.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavro {
namespace {

using tavroapi::PartitionConfig;

TEST(FindPersonality, MenuKeysChooseCodeAndCompanion) {
    tavroapi::PartitionFunction function;
    for (const auto& [key, code, companion] :
         {std::array{"1", "3", "16"}, std::array{"2", "5", "0"}, std::array{"3", "9", "0"}}) {
        const FunctionPersonality* const personality = FindPersonality(key);
        ASSERT_NE(personality, nullptr) << key;
        GivePersonality(function, *personality);
        EXPECT_EQ(function.personality, code);
        EXPECT_EQ(function.companion, companion);
    }
    EXPECT_EQ(&EthernetPersonality(), FindPersonality("1"));
}

TEST(FindPersonality, OtherTextsChooseNothing) {
    for (const char* text : {"", "0", "4", "01", " 1", "Ethernet"}) {
        EXPECT_EQ(FindPersonality(text), nullptr) << text;
    }
}

TEST(FlowControlCode, IsTheMenuKeyLessOne) {
    EXPECT_EQ(FlowControlCode("1"), "0");
    EXPECT_EQ(FlowControlCode("2"), "1");
    EXPECT_EQ(FlowControlCode("3"), "2");
    EXPECT_EQ(FlowControlCode("4"), "3");
    EXPECT_EQ(FlowControlCode("5"), "4");
    for (const char* text : {"", "0", "6", "05", "Auto"}) {
        EXPECT_EQ(FlowControlCode(text), std::nullopt) << text;
    }
}

constexpr std::array PersonalityCodes{"3", "5", "9"};
constexpr std::array PersonalityNames{"Ethernet", "iSCSI", "FCoE"};

TEST(ConvertPersonality, NamesAllEightFunctions) {
    PartitionConfig config;
    for (std::size_t i = 0; i < config.functions.size(); ++i) {
        config.functions[i].personality = PersonalityCodes[i % 3];
    }
    ConvertPersonality(config);
    for (std::size_t i = 0; i < config.functions.size(); ++i) {
        EXPECT_EQ(config.functions[i].personality, PersonalityNames[i % 3]);
    }
}

TEST(ConvertPersonality, OtherTextsStay) {
    PartitionConfig config;
    const std::array<const char*, 8> texts{"", "4", "03", "iSCSI", "FCoE ", "ethernet", "55", "x"};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        config.functions[i].personality = texts[i];
    }
    ConvertPersonality(config);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(config.functions[i].personality, texts[i]);
    }
}

TEST(ConvertFlowControl, EveryCodeHasItsName) {
    PartitionConfig config;
    config.flowControl = {"0", "1", "2", "3"};
    ConvertFlowControl(config, 4);
    EXPECT_EQ(config.flowControl,
              (std::array<std::string, 4>{"Auto", "Tx Enabled", "Rx Enabled", "Tx/Rx Enabled"}));
    config.flowControl[0] = "4";
    ConvertFlowControl(config, 1);
    EXPECT_EQ(config.flowControl[0], "Disabled");
}

TEST(ConvertFlowControl, OnlyTheGivenPortsAreNamed) {
    const std::array<std::string, 4> codes{"0", "0", "0", "0"};
    for (const std::int32_t portCount :
         {std::numeric_limits<std::int32_t>::min(), -1, 0, 1, 2, 3, 4, 5, 64, 65, 2147483647}) {
        PartitionConfig config;
        config.flowControl = codes;
        ConvertFlowControl(config, portCount);
        for (std::int32_t port = 0; port < 4; ++port) {
            EXPECT_EQ(config.flowControl[static_cast<std::size_t>(port)],
                      port < portCount ? "Auto" : "0")
                << portCount;
        }
    }
}

TEST(ConvertFlowControl, OtherTextsStay) {
    PartitionConfig config;
    config.flowControl = {"auto", "5", "", "Tx Enabled "};
    const auto before = config.flowControl;
    ConvertFlowControl(config, 4);
    EXPECT_EQ(config.flowControl, before);
}

}  // namespace
}  // namespace tavro
