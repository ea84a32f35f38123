#include "simulator/model/fcoe_fabric.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <list>

#include "tavroapi/fcoe_records.h"

namespace tavrosim {
namespace {

using tavrolib::Outcome;
using ::testing::ElementsAre;

const std::string PortWwn = "10:00:02:00:5E:10:00:04";

FabricTarget NewTarget(const std::string& portWwn) {
    FabricTarget target;
    target.portWwn = portWwn;
    return target;
}

FcoeFabric FourTargets() {
    FcoeFabric fabric;
    for (const char* wwn : {"50:00:02:00:5E:40:00:01", "50:00:02:00:5E:40:00:02",
                            "50:00:02:00:5E:40:00:03", "50:00:02:00:5E:40:00:04"}) {
        fabric.targets.push_back(NewTarget(wwn));
    }
    return fabric;
}

std::vector<std::string> PlacesOf(const std::vector<SeenTarget>& seen) {
    std::vector<std::string> places;
    for (const SeenTarget& target : seen) {
        places.push_back(target.target->portWwn.substr(21) + " at " + std::to_string(target.bus) +
                         ":" + std::to_string(target.number));
    }
    return places;
}

TEST(FcoeFabric, TargetsHaveTheNumbersInTheirOrder) {
    EXPECT_THAT(PlacesOf(TargetsSeenBy(FourTargets(), PortWwn, {})),
                ElementsAre("01 at 0:0", "02 at 0:1", "03 at 0:2", "04 at 0:3"));
}

TEST(FcoeFabric, OthersGoRoundTheNumbersOfBoundTargets) {
    const std::vector<FcoeBinding> bindings = {
        {.targetPortWwn = "50-00-02-00-5e-40-00-03", .bus = 0, .target = 0},
        {.targetPortWwn = "50:00:02:00:5E:40:00:02", .bus = 1, .target = 2},
        {.targetPortWwn = "50:00:02:00:5E:40:00:0F", .bus = 0, .target = 1},
    };
    EXPECT_THAT(PlacesOf(TargetsSeenBy(FourTargets(), PortWwn, bindings)),
                ElementsAre("01 at 0:2", "02 at 1:2", "03 at 0:0", "04 at 0:3"));
}

TEST(FcoeFabric, ATargetIsSeenByThePortsItAdmits) {
    FcoeFabric fabric = FourTargets();
    fabric.targets[0].initiators = {"10:00:02:00:5E:10:00:05"};
    fabric.targets[1].initiators = {"10:00:02:00:5E:10:00:05", "10-00-02-00-5e-10-00-04"};
    FcoePart part;
    part.portWwn = PortWwn;
    EXPECT_EQ(TargetsSeenBy(fabric, PortWwn, {}).size(), 3U);
    EXPECT_EQ(FindSeenTarget(fabric, part, "50:00:02:00:5E:40:00:01"), nullptr);
    EXPECT_EQ(FindSeenTarget(fabric, part, "50:00:02:00:5E:40:00:02"), &fabric.targets[1]);
    EXPECT_EQ(FindSeenTarget(fabric, part, "500002005e400003"), &fabric.targets[2]);
    EXPECT_EQ(FindFabricTarget(fabric, "50:00:02:00:5E:40:00:01"), &fabric.targets[0]);
}

TEST(FcoeFabric, WhatIsNoWwnNamesNoTarget) {
    FcoeFabric fabric = FourTargets();
    fabric.targets.push_back(NewTarget("no WWN"));
    EXPECT_EQ(FindFabricTarget(fabric, ""), nullptr);
    EXPECT_EQ(FindFabricTarget(fabric, "no WWN"), nullptr);
}

TEST(FcoeFabric, MacsAreMadeOfTheMapAndTheAddress) {
    FcoeFabric fabric;
    fabric.fcMap = "0EFC01";
    EXPECT_EQ(FabricMac(fabric, "0104FE"), "0E-FC-01-01-04-FE");
}

// A host with one FCoE function, served by its rows of the model.
class VirtualPorts : public testing::Test {
  protected:
    VirtualPorts() {
        Function& function =
            host.adapters.emplace_back().ports.emplace_back().functions.emplace_back();
        function.fcoe.emplace();
        function.fcoe->portWwn = PortWwn;
        function.fcoe->fcid = "0104FE";
    }

    FcoePart& Part() { return *host.adapters[0].ports[0].functions[0].fcoe; }

    Outcome Create(const std::string& wwn) {
        std::list<tavroapi::VirtualPortRequest> wanted(1);
        wanted.front().portWwn = wwn;
        return FindModel(50)->change(host, PortWwn, &wanted, nullptr);
    }

    Host host;
};

TEST_F(VirtualPorts, GetTheNextFreeAddressAndTheFunctionsNode) {
    Part().nodeWwn = "20:00:02:00:5E:10:00:04";
    Part().virtualPorts = {{"20:01:02:00:5E:10:00:04", Part().nodeWwn, "0104FF"}};
    ASSERT_TRUE(Create("20:02:02:00:5E:10:00:04").IsDone());
    EXPECT_EQ(Part().virtualPorts.at(1).fcid, "010500");
    EXPECT_EQ(Part().virtualPorts.at(1).nodeWwn, "20:00:02:00:5E:10:00:04");
}

TEST_F(VirtualPorts, GetNoAddressOfAnotherPortOfTheHostOrOfATarget) {
    Function other;
    other.fcoe.emplace().portWwn = "10:00:02:00:5E:10:00:05";
    other.fcoe->fcid = "010401";
    other.fcoe->virtualPorts = {{"20:01:02:00:5E:10:00:05", {}, "01040a"}};
    host.adapters.front().ports.front().functions.push_back(other);
    host.fcoeFabric.targets = {NewTarget("50:00:02:00:5E:40:00:01")};
    host.fcoeFabric.targets.front().fcid = "010403";
    Part().fcid = "010400";
    ASSERT_TRUE(Create("20:02:02:00:5E:10:00:04").IsDone());
    ASSERT_TRUE(Create("20:03:02:00:5E:10:00:04").IsDone());
    EXPECT_EQ(Part().virtualPorts.at(0).fcid, "010402");
    EXPECT_EQ(Part().virtualPorts.at(1).fcid, "010404");
    Part().fcid = "010409";
    ASSERT_TRUE(Create("20:04:02:00:5E:10:00:04").IsDone());
    EXPECT_EQ(Part().virtualPorts.at(2).fcid, "01040B");
}

TEST_F(VirtualPorts, AreRefusedWithReasons) {
    const Outcome invalid = Create("02-00-5E-10-00-04");
    EXPECT_EQ(invalid.status, static_cast<std::uint32_t>(Status::InvalidWwn));
    ASSERT_TRUE(invalid.error.has_value());
    EXPECT_EQ(invalid.error->message, L"The WWN is not valid.");
    EXPECT_EQ(invalid.error->details, L"port WWN \"02-00-5E-10-00-04\"");
    const Outcome taken = Create("10-00-02-00-5e-10-00-04");
    EXPECT_EQ(taken.status, static_cast<std::uint32_t>(Status::WwnInUse));
    EXPECT_EQ(taken.error->message, L"The WWN is in use on this host.");
    EXPECT_EQ(taken.error->details, L"port WWN \"10-00-02-00-5e-10-00-04\"");
    EXPECT_EQ(taken.error->action, L"Choose another WWN.");
}

TEST_F(VirtualPorts, AreRefusedWhenTheAddressesAreUsedUp) {
    Part().fcid = "FFFFFE";
    ASSERT_TRUE(Create("20:01:02:00:5E:10:00:04").IsDone());
    EXPECT_EQ(Part().virtualPorts.at(0).fcid, "FFFFFF");
    EXPECT_EQ(Create("20:02:02:00:5E:10:00:04").status,
              static_cast<std::uint32_t>(Status::NoFcidLeft));
}

}  // namespace
}  // namespace tavrosim
