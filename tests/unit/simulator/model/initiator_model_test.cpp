#include <gtest/gtest.h>

#include "simulator/host/host_file.h"
#include "simulator/model/model.h"
#include "tavroapi/codes.h"
#include "tavroapi/iscsi_records.h"

namespace tavrosim {
namespace {

using tavroapi::InitiatorRecord;
using tavroapi::IscsiPingRequest;
using tavroapi::IscsiPingResult;
using tavroapi::OperationCode;

constexpr const char* PingingMac = "02-00-5E-10-00-02";

Host HostWith(const std::string& members) {
    return HostFromText(R"({"name": "h", )" + members + R"(,
      "adapters": [{"name": "Model X", "number": 0, "type": "CNA", "partitionState": 1, "ports": [
        {"name": "Port 1", "functions": [
          {"number": 2, "mac": "02-00-5E-10-00-02", "iscsi": {}}]}]}]})");
}

Outcome Ping(const Host& host, const std::string& count, const std::string& address,
             IscsiPingResult& result) {
    IscsiPingRequest request{count, "32", "500", address};
    const auto code = static_cast<std::uint32_t>(OperationCode::PingFromIscsiPort);
    return FindModel(code)->read(host, PingingMac, &request, &result);
}

InitiatorRecord Initiator(const Host& host) {
    InitiatorRecord record;
    const auto code = static_cast<std::uint32_t>(OperationCode::ReadInitiator);
    EXPECT_TRUE(FindModel(code)->read(host, "", nullptr, &record).IsDone());
    return record;
}

const char* const SomeReachable = R"("reachable": [
    {"address": "192.0.2.1"}, {"address": "192.0.2.2", "lossPercent": 40},
    {"address": "192.0.2.3", "lossPercent": 4000000000}, {"address": "2001:db8::1"},
    {"address": "storage"}])";

TEST(IscsiPingModel, WhatIsNotReachableCompletesWithLosses) {
    const Host host = HostWith(SomeReachable);
    const struct {
        const char* address;
        std::uint32_t status;
        const char* received;
    } pings[] = {{"192.0.2.1", 0, "5"},
                 {"192.0.2.2", tavroapi::IscsiPingRepliesMissing, "3"},
                 {"192.0.2.3", tavroapi::IscsiPingRepliesMissing, "0"},
                 {"192.0.2.4", tavroapi::IscsiPingRepliesMissing, "0"},
                 {"2001:DB8:0::1", 0, "5"},
                 {"2001:db8::2", tavroapi::IscsiPingRepliesMissing, "0"}};
    for (const auto& ping : pings) {
        IscsiPingResult result;
        EXPECT_EQ(Ping(host, "5", ping.address, result).status, ping.status) << ping.address;
        EXPECT_EQ(result.received, ping.received) << ping.address;
    }
}

TEST(IscsiPingModel, ATextThatIsNoAddressIsRefused) {
    const Host host = HostWith(SomeReachable);
    for (const char* text : {"", "storage", "192.0.2", "192.0.2.256", "2001:db8"}) {
        IscsiPingResult result;
        const Outcome outcome = Ping(host, "5", text, result);
        EXPECT_EQ(outcome.status, static_cast<std::uint32_t>(Status::InvalidPingAddress)) << text;
        EXPECT_EQ(result.received, "") << text;
    }
}

TEST(IscsiPingModel, NothingIsLostOfNoPackets) {
    const Host host = HostWith(SomeReachable);
    for (const char* address : {"192.0.2.1", "192.0.2.3", "192.0.2.4"}) {
        IscsiPingResult result;
        EXPECT_TRUE(Ping(host, "0", address, result).IsDone()) << address;
        EXPECT_EQ(result.received, "0") << address;
    }
}

TEST(InitiatorModel, TextsOfTheLoginThatSayNothingMeanTheUsualValues) {
    Host host = HostWith(R"("initiator": {"name": "iqn.x", "login": {
        "multipath": "", "headerDigest": "", "dataDigest": "", "authentication": ""}})");
    const auto expectUsualValues = [&] {
        const tavroapi::LoginOptions login = Initiator(host).login;
        EXPECT_EQ(login.multipath, "Yes");
        EXPECT_EQ(login.headerDigest, "No");
        EXPECT_EQ(login.dataDigest, "No");
        EXPECT_EQ(login.authentication, "None");
    };
    expectUsualValues();
    InitiatorRecord record{"iqn.y", {}};
    const auto code = static_cast<std::uint32_t>(OperationCode::SetInitiator);
    ASSERT_TRUE(FindModel(code)->change(host, "", &record, nullptr).IsDone());
    EXPECT_EQ(Initiator(host).name, "iqn.y");
    expectUsualValues();
    record.login = {"No", "CRC32C", "CRC32C", "One-way CHAP", "user", "secret-secret", {}, {}};
    ASSERT_TRUE(FindModel(code)->change(host, "", &record, nullptr).IsDone());
    EXPECT_EQ(Initiator(host).login.multipath, "No");
    EXPECT_EQ(Initiator(host).login.headerDigest, "CRC32C");
    EXPECT_EQ(Initiator(host).login.dataDigest, "CRC32C");
    EXPECT_EQ(Initiator(host).login.authentication, "One-way CHAP");
}

}  // namespace
}  // namespace tavrosim
