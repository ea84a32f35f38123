#include "twin/rehearse/certainty.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "simulator/host/host_file.h"
#include "simulator/host/lookup.h"
#include "tavroapi/operation_code.h"

namespace tavrohost {
namespace {

using tavroapi::OperationCode;
using tavrosim::EthernetPart;
using tavrosim::Host;
using tavrosim::IscsiPart;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* Mac = "02-00-5E-10-00-00";
constexpr std::uint32_t AnyRefusal = 4711;

// A host with an Ethernet and an iSCSI function that share a MAC.
Host SmallHost() {
    return tavrosim::HostFromText(R"({
        "name": "small",
        "adapters": [{"name": "Tavro CNA 4610K", "number": 0, "type": "CNA", "partitionState": 1,
          "ports": [{"name": "Port 1", "functions": [
            {"number": 0, "mac": "02-00-5E-10-00-00", "ethernet": {"interface": "eth0"}},
            {"number": 2, "mac": "02-00-5E-10-00-00", "iscsi": {"storage": {
              "portals": [{"address": "192.0.2.1"}, {"address": "192.0.2.2"}],
              "targets": [{"name": "iqn.2015-01.com.example:a", "portal": {"address": "192.0.2.1"},
                           "discovery": "SendTargets"}]}}}]}]}]})");
}

template <class Part>
Part& PartOfHost(Host& host) {
    return tavrosim::PartOf<Part>(*tavrosim::FindFunctionWith<Part>(host, Mac).function);
}

std::vector<Doubt> DoubtsOf(OperationCode code, const Host& before, const Host& after,
                            std::uint32_t status = 0) {
    return DoubtsAbout({{static_cast<std::uint32_t>(code), Mac, status}}, before, after);
}

TEST(Certainty, FixedAddressesAreCertain) {
    const Host before = SmallHost();
    Host after = before;
    PartOfHost<EthernetPart>(after).tcpIp.address = "192.0.2.9";
    PartOfHost<IscsiPart>(after).tcpIp.address = "192.0.2.8";
    EXPECT_THAT(DoubtsOf(OperationCode::SetEthernetTcpIp, before, after), IsEmpty());
    EXPECT_THAT(DoubtsOf(OperationCode::SetIscsiTcpIp, before, after), IsEmpty());
}

TEST(Certainty, LeasesAreNotKnown) {
    const Host before = SmallHost();
    Host after = before;
    PartOfHost<EthernetPart>(after).tcpIp.dhcp = "Yes";
    EXPECT_THAT(DoubtsOf(OperationCode::SetEthernetTcpIp, before, after), SizeIs(1));
    EXPECT_THAT(DoubtsOf(OperationCode::SetIscsiTcpIp, before, after), IsEmpty());
    PartOfHost<IscsiPart>(after).tcpIp.dhcpIPv6 = "Yes";
    EXPECT_THAT(DoubtsOf(OperationCode::SetIscsiTcpIp, before, after), SizeIs(1));
}

TEST(Certainty, AKnownPortalIsCertainAndANewOneIsNot) {
    const Host before = SmallHost();
    Host after = before;
    EXPECT_THAT(DoubtsOf(OperationCode::AddPortal, before, after), IsEmpty());
    PartOfHost<IscsiPart>(after).storage.portals.push_back({{"192.0.2.3", "3260"}, {}});
    EXPECT_THAT(DoubtsOf(OperationCode::AddPortal, before, after), SizeIs(1));
}

TEST(Certainty, ATargetThatIsLostMayBeReachedThroughAnotherPortal) {
    const Host before = SmallHost();
    Host after = before;
    auto& storage = PartOfHost<IscsiPart>(after).storage;
    storage.portals.pop_back();
    EXPECT_THAT(DoubtsOf(OperationCode::RemovePortal, before, after), IsEmpty());
    storage.targets.clear();
    EXPECT_THAT(DoubtsOf(OperationCode::RemovePortal, before, after), SizeIs(1));
    EXPECT_THAT(DoubtsOf(OperationCode::LogOutOfTarget, before, after), SizeIs(1));
    storage.portals.clear();
    EXPECT_THAT(DoubtsOf(OperationCode::RemovePortal, before, after), IsEmpty());
}

TEST(Certainty, LoginsPingsVirtualPortsAndExportsAreNeverKnown) {
    const Host host = SmallHost();
    for (const OperationCode code :
         {OperationCode::LogInToTarget, OperationCode::PingFromIscsiPort,
          OperationCode::PingFromFcoePort, OperationCode::CreateVirtualPorts,
          OperationCode::ExportAdapterSettings}) {
        EXPECT_THAT(DoubtsOf(code, host, host), SizeIs(1)) << static_cast<int>(code);
    }
}

TEST(Certainty, ABootSecretCannotBeReadBack) {
    const Host before = SmallHost();
    Host after = before;
    auto& boot = PartOfHost<IscsiPart>(after).boot.emplace();
    boot.address = "192.0.2.9";
    EXPECT_THAT(DoubtsOf(OperationCode::WriteIscsiBoot, before, after), IsEmpty());
    boot.secondTarget.chapSecret = "example-secret";
    EXPECT_THAT(DoubtsOf(OperationCode::WriteIscsiBoot, before, after), SizeIs(1));
}

TEST(Certainty, FixedAddressesBesideALeaseOfTheOtherVersionAreCertain) {
    Host before = SmallHost();
    PartOfHost<EthernetPart>(before).tcpIp.dhcpIPv6 = "Yes";
    Host after = before;
    PartOfHost<EthernetPart>(after).tcpIp.address = "192.0.2.9";
    EXPECT_THAT(DoubtsOf(OperationCode::SetEthernetTcpIp, before, after), IsEmpty());
    EXPECT_THAT(DoubtsOf(OperationCode::SetEthernetTcpIp, before, before), SizeIs(1));
}

TEST(Certainty, SecretsOfTheInitiatorAndOfPortalsCannotBeReadBack) {
    const Host before = SmallHost();
    Host after = before;
    after.initiator.name = "iqn.2015-01.com.example:another";
    EXPECT_THAT(DoubtsOf(OperationCode::SetInitiator, before, after), IsEmpty());
    after.initiator.login.targetSecret = "example-secret";
    EXPECT_THAT(DoubtsOf(OperationCode::SetInitiator, before, after), SizeIs(1));
    PartOfHost<IscsiPart>(after).storage.portals[0].login.targetSecret = "example-secret";
    EXPECT_THAT(DoubtsOf(OperationCode::AddPortal, before, after), SizeIs(1));
}

TEST(Certainty, CountersOfTheHostGoOn) {
    const Host host = SmallHost();
    EXPECT_THAT(DoubtsOf(OperationCode::ResetEthernetStatistics, host, host), SizeIs(1));
    EXPECT_THAT(DoubtsOf(OperationCode::ResetFcoeStatistics, host, host), SizeIs(1));
    EXPECT_THAT(DoubtsOf(OperationCode::ReadEthernetStatistics, host, host), IsEmpty());
}

TEST(Certainty, OtherChangesAreCertain) {
    const Host host = SmallHost();
    for (const OperationCode code :
         {OperationCode::AddIsnsServer, OperationCode::RemoveIsnsServer,
          OperationCode::SetInitiator, OperationCode::RemoveTarget,
          OperationCode::DeleteVirtualPorts, OperationCode::WriteFip, OperationCode::WriteDcbConfig,
          OperationCode::WriteFcoeBoot, OperationCode::WriteAdapterSettings,
          OperationCode::WritePartitions, OperationCode::WritePersonality}) {
        EXPECT_THAT(DoubtsOf(code, host, host), IsEmpty()) << static_cast<int>(code);
    }
}

TEST(Certainty, ARefusalOfTheTwinIsCertainWhereItFollowsFromTheCapture) {
    const Host host = SmallHost();
    EXPECT_THAT(DoubtsOf(OperationCode::RemoveTarget, host, host, AnyRefusal), SizeIs(1));
    EXPECT_THAT(DoubtsOf(OperationCode::ReadTarget, host, host, AnyRefusal), SizeIs(1));
    EXPECT_THAT(DoubtsOf(OperationCode::ReadIscsiPort, host, host, AnyRefusal), IsEmpty());
    EXPECT_THAT(DoubtsOf(OperationCode::WriteAdapterSettings, host, host, AnyRefusal), IsEmpty());
}

TEST(Certainty, InAnotherVlanAnotherServerLeases) {
    Host before = SmallHost();
    PartOfHost<EthernetPart>(before).tcpIp.dhcpIPv6 = "Yes";
    PartOfHost<IscsiPart>(before).tcpIp.dhcpIPv6 = "Yes";
    Host after = before;
    PartOfHost<EthernetPart>(after).tcpIp.address = "192.0.2.9";
    PartOfHost<EthernetPart>(after).tcpIp.pendingVlanId = "12";
    EXPECT_THAT(DoubtsOf(OperationCode::SetEthernetTcpIp, before, after), SizeIs(1));
    PartOfHost<EthernetPart>(after).tcpIp.pendingVlanId = "0";
    EXPECT_THAT(DoubtsOf(OperationCode::SetEthernetTcpIp, before, after), IsEmpty());
    PartOfHost<IscsiPart>(after).tcpIp.address = "192.0.2.9";
    PartOfHost<IscsiPart>(after).tcpIp.vlanId = "12";
    EXPECT_THAT(DoubtsOf(OperationCode::SetIscsiTcpIp, before, after), SizeIs(1));
}

TEST(Certainty, ARefusalMayBeTheCompletionCodeOrStandInTheRecords) {
    const Host host = SmallHost();
    const auto doubts = [&](const RehearsedOperation& operation) {
        return DoubtsAbout({operation}, host, host);
    };
    const auto code = static_cast<std::uint32_t>(OperationCode::WritePersonality);
    EXPECT_THAT(doubts({.code = code, .request = Mac, .completionCode = 5}), SizeIs(1));
    EXPECT_THAT(doubts({.code = code, .request = Mac, .completionCode = 201}), IsEmpty());
    EXPECT_THAT(doubts({.code = code, .request = Mac, .completionCode = 0}), IsEmpty());
    EXPECT_THAT(doubts({.code = code, .request = Mac, .isIncomplete = true}), SizeIs(1));
}

TEST(Certainty, WhetherTheHostWasAskedIsNotToldAsAFact) {
    const Host host = SmallHost();
    const std::vector<Doubt> doubts = DoubtsOf(OperationCode::ReadTarget, host, host, AnyRefusal);
    ASSERT_THAT(doubts, SizeIs(1));
    EXPECT_EQ(doubts[0].reason, "the host may not have been asked this when it was captured");
}

TEST(Certainty, WhatTheHostRefusedToTellItMayRefuseToChange) {
    const auto hostWhoseDcbHasStatus = [](const char* status) {
        return tavrosim::HostFromText(
            R"({"name": "small", "adapters": [{"name": "A", "number": 0, "type": "CNA",
              "partitionState": 1, "ports": [{"name": "Port 1", "functions": [
                {"number": 0, "mac": "02-00-5E-10-00-00", "ethernet": {"interface": "eth0"}}]}]}],
              "captured": {"host": {"name": "small", "adapters": []}, "answers": [
                {"call": "DoOperation", "operation": 46, "request": "02-00-5E-10-00-00",
                 "status": )" +
            std::string(status) + "}]}}");
    };
    const Host refused = hostWhoseDcbHasStatus("4711");
    EXPECT_THAT(DoubtsOf(OperationCode::WriteDcbConfig, refused, refused), SizeIs(1));
    EXPECT_THAT(DoubtsOf(OperationCode::WriteFip, refused, refused), IsEmpty());
    const Host told = hostWhoseDcbHasStatus("0");
    EXPECT_THAT(DoubtsOf(OperationCode::WriteDcbConfig, told, told), IsEmpty());
}

TEST(Certainty, AHostWithoutAVlanPriorityMayHaveNoVlans) {
    Host before = SmallHost();
    PartOfHost<EthernetPart>(before).tcpIp.vlanPriority = "";
    Host after = before;
    PartOfHost<EthernetPart>(after).tcpIp.address = "192.0.2.9";
    EXPECT_THAT(DoubtsOf(OperationCode::SetEthernetTcpIp, before, after), IsEmpty());
    PartOfHost<EthernetPart>(after).tcpIp.pendingVlanId = "12";
    EXPECT_THAT(DoubtsOf(OperationCode::SetEthernetTcpIp, before, after), SizeIs(1));
}

TEST(Certainty, ADoubtIsToldOnceForARequest) {
    const Host host = SmallHost();
    const auto code = static_cast<std::uint32_t>(OperationCode::LogInToTarget);
    EXPECT_THAT(DoubtsAbout({{code, Mac, 0}, {code, Mac, 0}, {code, "other", 0}}, host, host),
                SizeIs(2));
}

}  // namespace
}  // namespace tavrohost
