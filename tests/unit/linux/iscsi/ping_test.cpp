#include "linux/iscsi/ping.h"

#include <gtest/gtest.h>

#include "linux/iscsi/rows.h"
#include "unit/linux/tree.h"

namespace tavrolinux {
namespace {

using tavroapi::IscsiPingRequest;

class PingOptions : public testing::Test {
  protected:
    void ExpectRefused(const IscsiPingRequest& request) {
        tavroapi::IscsiPingResult result;
        const Place at{{machine_, state_}, adapter_, interface_};
        EXPECT_EQ(PingFromIscsiPort(at, request, result).status,
                  static_cast<std::uint32_t>(Status::InvalidPingOption));
        EXPECT_EQ(result.received, "");
    }

  private:
    tavrolinux_test::Tree tree_;
    Machine machine_{tree_.Roots(), {}};
    StateStore state_{tree_.Roots()};
    Adapter adapter_;
    Interface interface_;
};

TEST_F(PingOptions, AreNumbers) {
    for (const char* const text : {"", "x", "5x", "-1", "0", "99999999999"}) {
        ExpectRefused({text, "64", "500", "127.0.0.1"});
        ExpectRefused({"5", "64", text, "127.0.0.1"});
    }
    for (const char* const text : {"", "x", "5x", "-1"}) {
        ExpectRefused({"5", text, "500", "127.0.0.1"});
    }
}

}  // namespace
}  // namespace tavrolinux
