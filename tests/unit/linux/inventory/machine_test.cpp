#include "linux/inventory/machine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "linux/inventory/pci.h"
#include "linux/serve/operation.h"
#include "unit/linux/tree.h"

namespace tavrolinux {
namespace {

using tavrolinux_test::Tree;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;

Interface PortCalled(const std::string& name, const std::string& key,
                     const std::string& portWwn = "") {
    Interface port;
    port.name = name;
    port.key = key;
    port.portWwn = portWwn;
    return port;
}

std::vector<std::string> NamesFound(const Machine& machine, std::string_view identifier,
                                    FunctionKind kind) {
    std::vector<std::string> names;
    for (const Machine::Found& found : machine.Find(identifier, kind)) {
        names.push_back(found.adapter->name + '/' + found.interface->name);
    }
    return names;
}

constexpr const char* Wwn = "10:00:02:00:5E:10:00:04";

Machine SampleMachine() {
    return {
        Roots{},
        {{"first",
          {PortCalled("eth0", "02-00-5E-10-00-00", Wwn), PortCalled("eth1", "02-00-5E-10-00-01")}},
         {"second", {PortCalled("eth2", "02-00-5E-10-00-00")}}}};
}

TEST(Machine, FindsFunctionsByTheirIdentifiers) {
    const Machine machine = SampleMachine();
    for (const char* identifier : {"02-00-5E-10-00-01", "02:00:5e:10:00:01", "02005E100001"}) {
        for (const FunctionKind kind :
             {FunctionKind::Any, FunctionKind::Ethernet, FunctionKind::Iscsi}) {
            EXPECT_THAT(NamesFound(machine, identifier, kind), ElementsAre("first/eth1"))
                << identifier;
        }
        EXPECT_THAT(NamesFound(machine, identifier, FunctionKind::Fcoe), IsEmpty());
    }
    EXPECT_THAT(NamesFound(machine, Wwn, FunctionKind::Fcoe), ElementsAre("first/eth0"));
    EXPECT_THAT(NamesFound(machine, Wwn, FunctionKind::Any), ElementsAre("first/eth0"));
    EXPECT_THAT(NamesFound(machine, Wwn, FunctionKind::Ethernet), IsEmpty());
    for (const char* none : {"", "eth0", "02-00-5E-10-00-02"}) {
        EXPECT_THAT(NamesFound(machine, none, FunctionKind::Any), IsEmpty()) << none;
    }
}

TEST(Machine, FindsAllFunctionsOfOneKeyAndRefusesToChoose) {
    const Machine machine = SampleMachine();
    EXPECT_THAT(NamesFound(machine, "02-00-5E-10-00-00", FunctionKind::Ethernet),
                ElementsAre("first/eth0", "second/eth2"));
    StateStore state{Roots{}};
    bool isServed = false;
    const auto serve = [&](const Place& /*at*/) {
        isServed = true;
        return Done();
    };
    const Outcome outcome =
        AtFunction({machine, state}, "02-00-5E-10-00-00", FunctionKind::Ethernet, serve);
    EXPECT_EQ(outcome.status, static_cast<std::uint32_t>(Status::IdentifierAmbiguous));
    EXPECT_EQ(outcome.error.value().details, L"02-00-5E-10-00-00: eth0 eth2");
    EXPECT_FALSE(isServed);
    EXPECT_TRUE(
        AtFunction({machine, state}, "02-00-5E-10-00-01", FunctionKind::Ethernet, serve).IsDone());
    EXPECT_TRUE(isServed);
}

TEST(Machine, NumbersPortsByTheirPlaceAndFindsAdaptersByName) {
    const Machine machine = SampleMachine();
    EXPECT_EQ(machine.FindAdapter("first"), &machine.Adapters().front());
    EXPECT_EQ(machine.FindAdapter("third"), nullptr);
    EXPECT_EQ(machine.Adapters().front().ports.at(0).place, 0U);
    EXPECT_EQ(machine.Adapters().front().ports.at(1).place, 1U);
    EXPECT_EQ(machine.Adapters().back().ports.at(0).place, 0U);
    EXPECT_EQ(PortName(0), "Port 1");
    EXPECT_EQ(PortName(9), "Port 10");
    EXPECT_EQ(MacText({0x02, 0x00, 0x5e, 0xab, 0x0c, 0xff}), "02-00-5E-AB-0C-FF");
}

class PciPlaces : public testing::Test {
  protected:
    void OnBus(const std::string& device, const char* bus) const {
        tree.Link("sys/devices/" + device + "/subsystem", std::string("../../bus/") + bus);
    }
    std::optional<std::string> PlaceOf(const std::string& device) const {
        const auto place = PciPlaceOf(tree.Placed("sys/devices/" + device));
        return place ? std::optional(place->Text()) : std::nullopt;
    }

    Tree tree;
};

TEST_F(PciPlaces, AreThoseOfTheDeviceItself) {
    OnBus("0000:03:00.1", "pci");
    OnBus("0000:03:1f.7", "pci");
    EXPECT_THAT(PlaceOf("0000:03:00.1"), Optional(std::string("0000:03:00.1")));
    const auto place = PciPlaceOf(tree.Placed("sys/devices/0000:03:1f.7")).value();
    EXPECT_EQ(place.slot, "0000:03:1f");
    EXPECT_EQ(place.function, 7U);
    EXPECT_EQ(place.device, tree.Placed("sys/devices/0000:03:1f.7"));
}

TEST_F(PciPlaces, AreThoseOfWhatAVirtioDeviceIsPartOf) {
    OnBus("0000:00:02.0", "pci");
    OnBus("0000:00:02.0/virtio1", "virtio");
    EXPECT_THAT(PlaceOf("0000:00:02.0/virtio1"), Optional(std::string("0000:00:02.0")));
    OnBus("virtio-mmio.3", "platform");
    OnBus("virtio-mmio.3/virtio2", "virtio");
    EXPECT_EQ(PlaceOf("virtio-mmio.3/virtio2"), std::nullopt);
}

TEST_F(PciPlaces, AreNoneOfOtherBuses) {
    OnBus("0000:00:14.0", "pci");
    OnBus("0000:00:14.0/usb1", "usb");
    EXPECT_EQ(PlaceOf("0000:00:14.0/usb1"), std::nullopt);
    EXPECT_EQ(PlaceOf("absent"), std::nullopt);
    OnBus("slot", "pci");
    OnBus("0000:00:14.", "pci");
    EXPECT_EQ(PlaceOf("slot"), std::nullopt);
    EXPECT_EQ(PlaceOf("0000:00:14."), std::nullopt);
}

TEST_F(PciPlaces, NameADeviceByItsNumbersWhereItHasNoName) {
    OnBus("0000:05:00.0", "pci");
    tree.File("sys/devices/0000:05:00.0/vendor", "0xfff1\n");
    tree.File("sys/devices/0000:05:00.0/device", "0x00a2\n");
    const auto place = PciPlaceOf(tree.Placed("sys/devices/0000:05:00.0")).value();
    EXPECT_EQ(PciNames().NameOf(place), "Device fff1:00a2");
}

}  // namespace
}  // namespace tavrolinux
