#include <gtest/gtest.h>

#include "simulator/host/host_file.h"
#include "simulator/model/model.h"
#include "tavroapi/tcpip_records.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavroapi::TcpIpSettings;

constexpr const char* TcpIpMac = "02-00-5E-10-00-02";

constexpr const char* TwoPorts = R"({
  "name": "h",
  "adapters": [{"name": "Model X", "number": 0, "type": "CNA", "partitionState": 1, "ports": [
    {"name": "Port 1", "functions": [
      {"number": 2, "mac": "02-00-5E-10-00-02", "iscsi": {"tcpIp": {
        "address": "192.0.2.7", "subnetMask": "255.255.255.0", "gateway": "192.0.2.1",
        "vlanId": "5", "vlanPriority": "1", "maxFrameSize": "9000",
        "addressIPv6": "2001:db8::7", "prefixLengthIPv6": "48", "gatewayIPv6": "2001:db8::1"}}},
      {"number": 4, "mac": "02-00-5E-10-00-04", "iscsi": {"tcpIp": {
        "address": "192.0.2.8", "addressIPv6": "2001:db8::8"}}}]}]}]
})";

class IscsiTcpIpModel : public testing::Test {
  protected:
    Outcome Set(TcpIpSettings record) {
        const auto code = static_cast<std::uint32_t>(OperationCode::SetIscsiTcpIp);
        Host copy = host;
        Outcome outcome = FindModel(code)->change(copy, TcpIpMac, &record, nullptr);
        if (outcome.IsDone()) {
            host = copy;
        }
        return outcome;
    }

    TcpIp& Settings(std::size_t function = 0) {
        return host.adapters[0].ports[0].functions[function].iscsi->tcpIp;
    }

    Host host = HostFromText(TwoPorts);
};

TEST_F(IscsiTcpIpModel, AnEmptyFieldLeavesTheSetting) {
    const TcpIp before = Settings();
    ASSERT_TRUE(Set({}).IsDone());
    EXPECT_EQ(Settings(), before);

    TcpIpSettings record;
    record.gatewayIPv6 = "2001:db8::2";
    TcpIp after = before;
    after.gatewayIPv6 = "2001:db8::2";
    ASSERT_TRUE(Set(record).IsDone());
    EXPECT_EQ(Settings(), after);

    record = {};
    record.vlanEnabled = "No";
    record.vlanId = "17";
    record.dhcpEnabled = "No";
    after.vlanId = "0";
    ASSERT_TRUE(Set(record).IsDone());
    EXPECT_EQ(Settings(), after);
}

TEST_F(IscsiTcpIpModel, EveryFieldOverwritesItsSetting) {
    TcpIpSettings record;
    record.dhcpEnabled = "No";
    record.ipAddress = "192.0.2.77";
    record.subnetMask = "255.255.0.0";
    record.defaultGateway = "192.0.2.2";
    record.vlanEnabled = "Yes";
    record.vlanId = "17";
    record.vlanPriority = "3";
    record.maxFrameSize = "1500";
    record.dhcpEnabledIPv6 = "No";
    record.staticIPv6 = "2001:db8::77";
    record.staticPrefixLength = "124";
    record.gatewayIPv6 = "0:0:0:0:0:0:0:0";
    ASSERT_TRUE(Set(record).IsDone());
    EXPECT_EQ(Settings(), (TcpIp{"No",
                                 "192.0.2.77",
                                 "255.255.0.0",
                                 "192.0.2.2",
                                 "17",
                                 {},
                                 "3",
                                 "1500",
                                 "No",
                                 "2001:db8::77",
                                 "124",
                                 "0:0:0:0:0:0:0:0"}));
}

TEST_F(IscsiTcpIpModel, DhcpGivesTheAddresses) {
    TcpIpSettings record;
    record.dhcpEnabled = "Yes";
    record.dhcpEnabledIPv6 = "Yes";
    record.staticIPv6 = "2001:db8::77";
    ASSERT_TRUE(Set(record).IsDone());
    EXPECT_EQ(Settings().address, "192.0.2.100");
    EXPECT_EQ(Settings().dhcpIPv6, "Yes");
    EXPECT_EQ(Settings().addressIPv6, "2001:db8::100");
    EXPECT_EQ(Settings().gatewayIPv6, "2001:db8::1");
}

TEST_F(IscsiTcpIpModel, AnAddressInUseIsRefusedAndNothingChanges) {
    const TcpIp before = Settings();
    for (const char* address : {"2001:db8::8", "2001:0DB8:0::8"}) {
        TcpIpSettings record;
        record.ipAddress = "192.0.2.77";
        record.staticIPv6 = address;
        EXPECT_EQ(Set(record).status, static_cast<std::uint32_t>(Status::AddressInUse)) << address;
        EXPECT_EQ(Settings(), before) << address;
    }
    TcpIpSettings own;
    own.staticIPv6 = "2001:db8:0::7";
    EXPECT_TRUE(Set(own).IsDone()) << "a port's own address is not in the way";
}

TEST_F(IscsiTcpIpModel, SeveralPortsMayHaveTheExampleAndNoAddress) {
    for (const char* address : {"2001:DB8:85A3:42:1000:8A2E:370:7334",
                                "2001:db8:85a3:42:1000:8a2e:370:7334", "0:0:0:0:0:0:0:0"}) {
        Settings(1).addressIPv6 = address;
        TcpIpSettings record;
        record.staticIPv6 = address;
        EXPECT_TRUE(Set(record).IsDone()) << address;
        EXPECT_EQ(Settings().addressIPv6, address);
    }
    TcpIpSettings near;
    near.staticIPv6 = "2001:db8:85a3:42:1000:8a2e:370:7335";
    Settings(1).addressIPv6 = near.staticIPv6;
    EXPECT_FALSE(Set(near).IsDone()) << "the next address is an address like any other";
}

}  // namespace
}  // namespace tavrosim
