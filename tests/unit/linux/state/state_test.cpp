#include "linux/state/state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "library/json/json.h"
#include "library/json/place.h"
#include "linux/state/state_json.h"
#include "unit/linux/tree.h"

namespace tavrolinux {
namespace {

using tavrolinux_test::Tree;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* Secret = "a secret of sixteen";

void Fill(State& state) {
    state.initiatorLogin.initiatorSecret = Secret;
    InterfaceState& port = state.interfaces["eth0"];
    port.baselines["ethernet"] = {
        {2, 4026531840}, "02-00-5E-00-00-01", {{"rx_packets", 7}, {"tx_packets", 9}}};
    port.portals.push_back({"192.0.2.1", 3260, {}});
    port.portals.back().login.targetSecret = Secret;
    port.logins.push_back({"iqn.2004-10.com.example:\xe9", "2001:db8::1", 65535, {}});
}

void ExpectFilled(const State& state) {
    EXPECT_EQ(state.initiatorLogin.initiatorSecret, Secret);
    ASSERT_EQ(state.interfaces.size(), 1U);
    const InterfaceState& port = state.interfaces.at("eth0");
    ASSERT_EQ(port.portals.size(), 1U);
    EXPECT_EQ(port.portals.front().address, "192.0.2.1");
    EXPECT_EQ(port.portals.front().port, 3260);
    EXPECT_EQ(port.portals.front().login.targetSecret, Secret);
    ASSERT_EQ(port.logins.size(), 1U);
    EXPECT_EQ(port.logins.front().target, "iqn.2004-10.com.example:\xe9");
    EXPECT_EQ(port.logins.front().address, "2001:db8::1");
    EXPECT_EQ(port.logins.front().port, 65535);
}

// A state whose initiator has a secret of that number, and how its list of secrets goes on.
std::string WithSecrets(const std::string& number, const std::string& list) {
    return "{\n  \"format\": 1,\n  \"initiatorLogin\": {\"targetSecret\": " + number +
           "},\n  \"secrets\": [" + list;
}

class KeptState : public testing::Test {
  protected:
    KeptState() {
        tree.Directory("variable");
        Boot("0f1e2d3c");
    }
    void Boot(const std::string& id) const {
        tree.File("proc/sys/kernel/random/boot_id", id + '\n');
    }

    Tree tree;
    const std::filesystem::path file = tree.Placed("variable/tavrocli/state.json");
    StateStore store{tree.Roots()};
};

TEST_F(KeptState, IsEmptyAtFirst) {
    EXPECT_THAT(store.Read().interfaces, IsEmpty());
    EXPECT_EQ(store.Read().bootId, "0f1e2d3c");
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(KeptState, IsReadAsItWasStored) {
    store.Change(Fill);
    const State state = StateStore(tree.Roots()).Read();
    ExpectFilled(state);
    const Baseline& baseline = state.interfaces.at("eth0").baselines.at("ethernet");
    EXPECT_EQ(baseline.number, (InterfaceNumber{2, 4026531840}));
    EXPECT_EQ(baseline.address, "02-00-5E-00-00-01");
    EXPECT_EQ(baseline.counters,
              (std::map<std::string, std::uint64_t>{{"rx_packets", 7}, {"tx_packets", 9}}));
}

TEST_F(KeptState, IsADocumentOfJsonWithTheSecretsBehindAllElse) {
    const std::string odd = "\"quoted\\ \x01\x7f \xc3\xa9\xff";
    store.Change([&](State& state) {
        Fill(state);
        state.interfaces["eth0"].logins.front().login.targetSecret = odd;
    });
    const std::string text = tavrolib_test::Read(file);
    const tavrolib::Json json = tavrolib::ParseJson(text);
    EXPECT_EQ(json["initiatorLogin"]["initiatorSecret"], 0);
    EXPECT_FALSE(json["initiatorLogin"].contains("targetSecret"));
    EXPECT_EQ(json["interfaces"]["eth0"]["logins"][0]["login"]["targetSecret"], 2);
    ASSERT_EQ(json["secrets"].size(), 3U);
    EXPECT_EQ(json["secrets"][0], Secret);
    EXPECT_EQ(json["secrets"][1], Secret);
    EXPECT_LT(text.find("\"interfaces\""), text.find(Secret));
    EXPECT_EQ(store.Read().interfaces.at("eth0").logins.front().login.targetSecret, odd);
}

TEST_F(KeptState, LosesBaselinesWithTheBootAndNothingElse) {
    store.Change(Fill);
    Boot("99999999");
    const State state = store.Read();
    ExpectFilled(state);
    EXPECT_THAT(state.interfaces.at("eth0").baselines, IsEmpty());
    EXPECT_EQ(state.bootId, "99999999");
}

TEST_F(KeptState, IsItsOwnersAlone) {
    store.Change(Fill);
    EXPECT_TRUE(tavrolib_test::IsOwnersOnly(file));
    EXPECT_THAT(tavrolib_test::NewFilesIn(file.parent_path()), IsEmpty());
    // And stays so where somebody has changed that.
    std::filesystem::permissions(file, std::filesystem::perms(0644));
    store.Change([](State&) {});
    EXPECT_TRUE(tavrolib_test::IsOwnersOnly(file));
}

TEST_F(KeptState, StaysAsItIsWhenAChangeFails) {
    store.Change(Fill);
    const std::string before = tavrolib_test::Read(file);
    EXPECT_THROW(store.Change([](State& state) {
        state.interfaces.clear();
        throw StateFailure(L"no");
    }),
                 StateFailure);
    EXPECT_EQ(tavrolib_test::Read(file), before);
}

TEST_F(KeptState, IsRefusedWhenItIsDamagedAndNothingOfItIsTold) {
    store.Change([](State&) {});
    for (const std::string& damaged :
         {std::string(),
          std::string("{"),
          std::string("[]"),
          std::string("{}"),
          std::string(R"({"format": 2})"),
          std::string(R"({"format": 1, "bootId": 5})"),
          std::string(R"({"format": 1, "interfaces": {"eth0": {"portals": [{"port": 65536}]}}})"),
          std::string(R"({"format": 1, "bootId": ")") + Secret + R"(", "interfaces": 1})",
          std::string(R"({"format": 1, "initiatorLogin": ")") + Secret + R"("})",
          std::string(R"({"format": 1, "initiatorLogin": {"a": ")") + Secret,
          std::string(R"({"format": 1, "initiatorLogin": {"targetSecret": ")") + Secret + R"("}})",
          std::string(R"({"format": 1, "initiatorLogin": {"targetSecret": 0}})"),
          WithSecrets("1", "\n    \"sixteen\"\n  ]\n}\n"),
          WithSecrets("-1", "\n    \"sixteen\"\n  ]\n}\n"),
          WithSecrets("0", ""),
          WithSecrets("0", "\n    \"sixteen\""),
          WithSecrets("0", "\n    \"sixteen\",\n  ]\n}\n"),
          WithSecrets("0", "\n    \"sixteen\"\n  ]\n}"),
          WithSecrets("0", "\n\"sixteen\"\n  ]\n}\n"),
          WithSecrets("0", "\n    \"sixteen\\u0\"\n  ]\n}\n"),
          WithSecrets("0", "\n    \"sixteen\\u00zz\"\n  ]\n}\n"),
          WithSecrets("0", "\n    \"sixteen\\n\"\n  ]\n}\n"),
          WithSecrets("0", "\n    \"sixteen\t\"\n  ]\n}\n")}) {
        tavrolib_test::Write(file, damaged);
        try {
            store.Change([](State&) { FAIL() << "changed"; });
            FAIL() << damaged;
        } catch (const StateFailure& failure) {
            EXPECT_THAT(failure.Text(), HasSubstr(L"state.json"));
            EXPECT_THAT(failure.Text(), Not(HasSubstr(L"sixteen")));
        }
        EXPECT_EQ(tavrolib_test::Read(file), damaged);
    }
}

TEST_F(KeptState, KeepsCountersAndNamesOfEveryKind) {
    store.Change([](State& state) {
        state.interfaces["odd\xff"].baselines["ethernet"] = {
            {1, 1}, "", {{"rx", 0xffffffffffffffff}}};
    });
    const State state = store.Read();
    ASSERT_TRUE(state.interfaces.contains("odd\xff"));
    EXPECT_EQ(state.interfaces.at("odd\xff").baselines.at("ethernet").counters.at("rx"),
              0xffffffffffffffffU);
}

}  // namespace
}  // namespace tavrolinux
