#include <gtest/gtest.h>

#include "simulator/host/host_file.h"
#include "simulator/host/restart.h"
#include "simulator/model/model.h"
#include "tavroapi/codes.h"
#include "tavroapi/tcpip_records.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavroapi::TcpIpSettings;

class PendingVlan : public testing::Test {
  protected:
    // The completion code of a change of the function's settings.
    std::uint32_t Set(const char* vlanEnabled, const char* vlanId, const char* address = "") {
        TcpIpSettings record;
        record.ipVersion = "1";
        record.vlanEnabled = vlanEnabled;
        record.vlanId = vlanId;
        record.ipAddress = address;
        const auto code = static_cast<std::uint32_t>(OperationCode::SetEthernetTcpIp);
        EXPECT_TRUE(FindModel(code)->change(host, "02-00-5E-10-00-00", &record, nullptr).IsDone());
        return record.result;
    }

    TcpIp& Settings() { return host.adapters[0].ports[0].functions[0].ethernet->tcpIp; }

    Host host = HostFromText(R"({"name": "h", "adapters": [
      {"name": "A", "number": 0, "type": "CNA", "partitionState": 1, "ports": [
        {"name": "Port 1", "functions": [
          {"number": 0, "mac": "02-00-5E-10-00-00",
           "ethernet": {"interface": "eth0", "tcpIp": {"vlanId": "3"}}}]}]}]})");
};

TEST_F(PendingVlan, WaitsForTheRestart) {
    EXPECT_EQ(Set("Yes", "7"), tavroapi::AppliedAtRestart);
    EXPECT_EQ(Settings().vlanId, "3");
    Restart(host);
    EXPECT_EQ(Settings().vlanId, "7");
    EXPECT_EQ(Set("Yes", "7"), 0U);
}

TEST_F(PendingVlan, StaysWhileSomethingElseChanges) {
    EXPECT_EQ(Set("Yes", "7"), tavroapi::AppliedAtRestart);
    EXPECT_EQ(Set("", "", "192.0.2.9"), tavroapi::AppliedAtRestart);
    EXPECT_EQ(Settings().address, "192.0.2.9");
    EXPECT_EQ(Settings().pendingVlanId, "7");
}

TEST_F(PendingVlan, GoesWithAChangeBack) {
    EXPECT_EQ(Set("No", "9"), tavroapi::AppliedAtRestart);
    EXPECT_EQ(Settings().pendingVlanId, "0");
    EXPECT_EQ(Set("Yes", "3"), 0U);
    EXPECT_FALSE(Settings().pendingVlanId);
}

}  // namespace
}  // namespace tavrosim
