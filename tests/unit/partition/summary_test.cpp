#include <gtest/gtest.h>

#include "console/redirect.h"
#include "partition/partitions.h"

namespace tavro {
namespace {

tavroapi::PartitionConfig Sample(const char* mode, std::int32_t portCount) {
    tavroapi::PartitionConfig config;
    config.mode = mode;
    config.portCount = portCount;
    config.flowControl = {"flow 1", "flow 2", "flow 3", "flow 4"};
    for (std::size_t i = 0; i < config.functions.size(); ++i) {
        config.functions[i].personality = "P" + std::to_string(i);
        config.functions[i].lowerLimit = "L" + std::to_string(i);
        config.functions[i].upperLimit = "U" + std::to_string(i);
    }
    return config;
}

std::string SummaryOf(const tavroapi::PartitionConfig& config) {
    console::MemoryConsole memory;
    ShowPartitionSummary(config);
    return memory.Output();
}

TEST(ShowPartitionSummary, PortsWithTheirFunctions) {
    EXPECT_EQ(SummaryOf(Sample("2", 2)),
              "\tMulti-function mode: 2\n"
              "\tPort1 >>>\n"
              "\tFlow_control:flow 1\n"
              "\t0 = P0\tL0\tU0\n"
              "\t2 = P2\tL2\tU2\n"
              "\t4 = P4\tL4\tU4\n"
              "\t6 = P6\tL6\tU6\n"
              "\t-------------------------------\n"
              "\tPort2 >>>\n"
              "\tFlow_control:flow 2\n"
              "\t1 = P1\tL1\tU1\n"
              "\t3 = P3\tL3\tU3\n"
              "\t5 = P5\tL5\tU5\n"
              "\t7 = P7\tL7\tU7\n"
              "\t-------------------------------\n"
              "\n");
}

TEST(ShowPartitionSummary, SingleFunctionModeHidesTheFunctions) {
    EXPECT_EQ(SummaryOf(Sample("SF", 1)),
              "\tMulti-function mode: SF\n"
              "\tPort1 >>>\n"
              "\tFlow_control:flow 1\n"
              "\t-------------------------------\n"
              "\n");
}

TEST(ShowPartitionSummary, OnlyTheExactWordIsSingleFunctionMode) {
    for (const char* mode : {"sf", "SF ", "0", ""}) {
        EXPECT_NE(SummaryOf(Sample(mode, 4)).find("\t7 = P7\tL7\tU7\n"), std::string::npos) << mode;
    }
}

TEST(ShowPartitionSummary, WithoutPortsThereIsOnlyTheMode) {
    EXPECT_EQ(SummaryOf(Sample("MF", 0)), "\tMulti-function mode: MF\n\n");
    EXPECT_EQ(SummaryOf(Sample("MF", -3)), "\tMulti-function mode: MF\n\n");
}

TEST(ShowPartitionSummary, ThePortsBeyondTheFourthHaveNoFlowControl) {
    EXPECT_EQ(SummaryOf(Sample("MF", 5)),
              "\tMulti-function mode: MF\n"
              "\tPort1 >>>\n"
              "\tFlow_control:flow 1\n"
              "\t0 = P0\tL0\tU0\n"
              "\t5 = P5\tL5\tU5\n"
              "\t-------------------------------\n"
              "\tPort2 >>>\n"
              "\tFlow_control:flow 2\n"
              "\t1 = P1\tL1\tU1\n"
              "\t6 = P6\tL6\tU6\n"
              "\t-------------------------------\n"
              "\tPort3 >>>\n"
              "\tFlow_control:flow 3\n"
              "\t2 = P2\tL2\tU2\n"
              "\t7 = P7\tL7\tU7\n"
              "\t-------------------------------\n"
              "\tPort4 >>>\n"
              "\tFlow_control:flow 4\n"
              "\t3 = P3\tL3\tU3\n"
              "\t-------------------------------\n"
              "\tPort5 >>>\n"
              "\tFlow_control:\n"
              "\t4 = P4\tL4\tU4\n"
              "\t-------------------------------\n"
              "\n");
}

}  // namespace
}  // namespace tavro
