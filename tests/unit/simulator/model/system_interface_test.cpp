// Functions of a captured host that are one interface of its system.
#include <gtest/gtest.h>

#include "simulator/host/host_file.h"
#include "simulator/model/model.h"
#include "tavroapi/ethernet_records.h"
#include "tavroapi/tcpip_records.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavroapi::TcpIpSettings;

constexpr const char* InterfaceMac = "02-00-5E-10-00-00";

class SystemInterface : public testing::Test {
  protected:
    Outcome Set(OperationCode code, const char* address) {
        TcpIpSettings record;
        record.ipVersion = "1";
        record.dhcpEnabled = "No";
        record.ipAddress = address;
        record.vlanEnabled = "No";
        record.vlanId = "0";
        record.vlanPriority = "0";
        record.maxFrameSize = "1500";
        return FindModel(static_cast<std::uint32_t>(code))
            ->change(host, InterfaceMac, &record, nullptr);
    }

    Outcome SetJumboPacket(const char* frame) {
        constexpr std::size_t JumboPacket = 9;
        tavroapi::AdapterSettings record;
        record.settings.at(JumboPacket).value = frame;
        record.settings.at(JumboPacket).changed = "1";
        const auto code = static_cast<std::uint32_t>(OperationCode::WriteAdapterSettings);
        return FindModel(code)->change(host, InterfaceMac, &record, nullptr);
    }

    Function& FunctionAt(std::size_t place) { return host.adapters[0].ports[0].functions[place]; }

    Host host = HostFromText(R"({"name": "h", "adapters": [
      {"name": "A", "number": 0, "type": "Ethernet", "partitionState": 2, "ports": [
        {"name": "Port 1", "functions": [
          {"number": 0, "mac": "02-00-5E-10-00-00", "ethernet": {"interface": "eth0",
            "tcpIp": {"vlanPriority": "", "maxFrameSize": ""}}},
          {"number": 1, "mac": "02-00-5E-10-00-00", "iscsi": {
            "tcpIp": {"vlanPriority": "", "maxFrameSize": ""}}}]}]}]})");
};

TEST_F(SystemInterface, GivesItsAddressToAllItsFunctions) {
    ASSERT_TRUE(Set(OperationCode::SetEthernetTcpIp, "192.0.2.9").IsDone());
    EXPECT_EQ(FunctionAt(0).ethernet->tcpIp.address, "192.0.2.9");
    EXPECT_EQ(FunctionAt(1).iscsi->tcpIp, FunctionAt(0).ethernet->tcpIp);
    EXPECT_TRUE(Set(OperationCode::SetEthernetTcpIp, "192.0.2.9").IsDone()) << "it is its own";
}

TEST_F(SystemInterface, KeepsSettingsAwayThatItDoesNotHave) {
    ASSERT_TRUE(Set(OperationCode::SetEthernetTcpIp, "192.0.2.9").IsDone());
    EXPECT_EQ(FunctionAt(0).ethernet->tcpIp.vlanPriority, "");
    EXPECT_EQ(FunctionAt(0).ethernet->tcpIp.maxFrameSize, "");
}

TEST_F(SystemInterface, KeepsTheFrameThatItsIscsiFunctionTells) {
    FunctionAt(1).iscsi->tcpIp.maxFrameSize = "4000";
    ASSERT_TRUE(Set(OperationCode::SetEthernetTcpIp, "192.0.2.9").IsDone());
    EXPECT_EQ(FunctionAt(1).iscsi->tcpIp.address, "192.0.2.9");
    EXPECT_EQ(FunctionAt(1).iscsi->tcpIp.maxFrameSize, "4000");
}

TEST_F(SystemInterface, GivesItsFramesToAnIscsiFunctionThatTellsThem) {
    FunctionAt(1).iscsi->tcpIp.maxFrameSize = "1500";
    ASSERT_TRUE(SetJumboPacket("9014").IsDone());
    EXPECT_EQ(FunctionAt(1).iscsi->tcpIp.maxFrameSize, "9000");
    FunctionAt(1).iscsi->tcpIp.maxFrameSize = "";
    ASSERT_TRUE(SetJumboPacket("4088").IsDone());
    EXPECT_EQ(FunctionAt(1).iscsi->tcpIp.maxFrameSize, "");
}

TEST_F(SystemInterface, LeavesTheIscsiFunctionNoAddressOfItsOwn) {
    const Outcome outcome = Set(OperationCode::SetIscsiTcpIp, "192.0.2.9");
    EXPECT_EQ(outcome.status, static_cast<std::uint32_t>(Status::NotOffered));
}

TEST_F(SystemInterface, IsNoneWhereFunctionsHaveAPriorityOfTheirOwn) {
    FunctionAt(0).ethernet->tcpIp.vlanPriority = "0";
    FunctionAt(1).iscsi->tcpIp.vlanPriority = "0";
    ASSERT_TRUE(Set(OperationCode::SetIscsiTcpIp, "192.0.2.8").IsDone());
    ASSERT_TRUE(Set(OperationCode::SetEthernetTcpIp, "192.0.2.9").IsDone());
    EXPECT_EQ(FunctionAt(1).iscsi->tcpIp.address, "192.0.2.8");
}

}  // namespace
}  // namespace tavrosim
