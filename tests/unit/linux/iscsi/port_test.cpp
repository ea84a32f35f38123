#include "linux/iscsi/port.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace tavrolinux {
namespace {

namespace iscsi_port = tavroapi::iscsi_port;
namespace iscsi_defaults = tavroapi::iscsi_defaults;

IscsiPort SamplePort() {
    IscsiPort port;
    port.adapterName = "Example 10GbE Adapter";
    port.key = "02-00-5E-10-00-00";
    port.place = 1;
    port.link.isUp = true;
    port.link.hasCarrier = true;
    port.link.mtu = 9000;
    port.kernelDriver = "example";
    port.driver = DriverInformation{"other", "1.2", "3.4", "5.6", "0000:03:00.1"};
    port.linkModes.emplace().speed = 10000;
    port.product = {"SN1", "PN1"};
    port.tcpIp.dhcpEnabled = "Yes";
    port.tcpIp.ipAddress = "192.0.2.1";
    port.tcpIp.subnetMask = "255.255.255.0";
    port.tcpIp.defaultGateway = "192.0.2.254";
    port.tcpIp.vlanEnabled = "No";
    port.tcpIp.vlanId = "0";
    port.tcpIp.dhcpEnabledIPv6 = "No";
    port.tcpIp.staticIPv6 = "2001:db8::1";
    port.tcpIp.staticPrefixLength = "56";
    port.tcpIp.gatewayIPv6 = "2001:db8::fe";
    return port;
}

std::string Told(iscsi_port::Position position) {
    const auto facts = IscsiPortFacts();
    const auto fact = std::ranges::find(facts, position, &IscsiPortFact::position);
    return fact == facts.end() ? "not told" : fact->tell(SamplePort());
}

TEST(IscsiPort, TellsWhatIsKnownPositionByPosition) {
    EXPECT_EQ(Told(iscsi_port::FunctionNumber), "3");
    EXPECT_EQ(Told(iscsi_port::Driver), "example");
    EXPECT_EQ(Told(iscsi_port::DriverVersion), "1.2");
    EXPECT_EQ(Told(iscsi_port::Mac), "02-00-5E-10-00-00");
    EXPECT_EQ(Told(iscsi_port::ModelName), "Example 10GbE Adapter");
    EXPECT_EQ(Told(iscsi_port::SerialNumber), "SN1");
    EXPECT_EQ(Told(iscsi_port::LinkStatus), "Up");
    EXPECT_EQ(Told(iscsi_port::LinkSpeed), "10 Gbps");
    EXPECT_EQ(Told(iscsi_port::Dhcp), "Yes");
    EXPECT_EQ(Told(iscsi_port::Address), "192.0.2.1");
    EXPECT_EQ(Told(iscsi_port::SubnetMask), "255.255.255.0");
    EXPECT_EQ(Told(iscsi_port::Gateway), "192.0.2.254");
    EXPECT_EQ(Told(iscsi_port::Vlan), "No");
    EXPECT_EQ(Told(iscsi_port::VlanId), "0");
    EXPECT_EQ(Told(iscsi_port::VlanPriority), "");
    EXPECT_EQ(Told(iscsi_port::MaximumFrameSize), "9000");
    EXPECT_EQ(Told(iscsi_port::DhcpIPv6), "No");
    EXPECT_EQ(Told(iscsi_port::AddressIPv6), "2001:db8::1");
    EXPECT_EQ(Told(iscsi_port::PrefixLengthIPv6), "56");
    EXPECT_EQ(Told(iscsi_port::GatewayIPv6), "2001:db8::fe");
    EXPECT_EQ(Told(iscsi_port::ActiveSessions), "0");
    EXPECT_EQ(Told(iscsi_port::FirmwareVersion), "3.4");
}

TEST(IscsiPort, FillsEveryPositionOnce) {
    std::set<std::size_t> positions;
    for (const IscsiPortFact& fact : IscsiPortFacts()) {
        EXPECT_TRUE(positions.insert(fact.position).second) << fact.position;
    }
    EXPECT_EQ(positions.size(), tavroapi::IscsiPortRecord{}.texts.size());
}

TEST(IscsiPort, ProposesParametersAtEveryPositionOnce) {
    std::set<std::size_t> positions;
    for (const IscsiDefault& proposed : IscsiDefaults()) {
        EXPECT_TRUE(positions.insert(proposed.position).second) << proposed.position;
    }
    EXPECT_EQ(positions.size(), tavroapi::IscsiParameterRecord{}.texts.size());
}

}  // namespace
}  // namespace tavrolinux
