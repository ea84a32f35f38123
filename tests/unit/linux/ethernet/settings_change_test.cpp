#include "linux/ethernet/settings_change.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "library/calls/status.h"
#include "linux/system/failure.h"
#include "unit/linux/ethernet/sample_device.h"
#include "unit/linux/system/counted_signals.h"

namespace tavrolinux {
namespace {

using tavrolib::Outcome;
using tavrolib::Status;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// A device in memory. What it is told it notes, and does, unless a test says otherwise.
class FakeDoor : public EthernetDoor {
  public:
    EthernetDevice device = SampleDevice();
    std::vector<std::string> done;
    std::function<void(const std::string&)> before = [](const std::string&) {};
    std::function<void(EthernetDevice&)> afterwards = [](EthernetDevice&) {};

    // What a reading tells, unless it is just what there is.
    std::function<void(EthernetDevice&)> told = [](EthernetDevice&) {};

    EthernetDevice Read() override {
        EthernetDevice shown = device;
        told(shown);
        return shown;
    }
    void SetFeatures(const NamedBits& wanted) override {
        std::string what = "features";
        for (const auto& [name, isOn] : wanted) {
            what += ' ' + name + (isOn ? " on" : " off");
        }
        Do(what, [&] {
            for (const auto& [name, isOn] : wanted) {
                device.features[name].isWanted = isOn;
                device.features[name].isActive = isOn;
            }
        });
    }
    void SetCoalescing(const Coalescing& wanted) override {
        Do("coalescing", [&] {
            delays.push_back(wanted.receiveDelay.value_or(0));
            device.coalescing = wanted;
        });
    }
    void SetRings(const Rings& wanted) override {
        Do("rings " + std::to_string(wanted.receive.present) + ' ' +
               std::to_string(wanted.send.present),
           [&] { device.rings = wanted; });
    }
    void SetChannels(const Channels& wanted) override {
        Do("channels", [&] { device.channels = wanted; });
    }
    void SetPause(const Pause& wanted) override {
        Do("pause", [&] { device.pause = wanted; });
    }
    void SetWakeUp(const NamedBits& wanted) override {
        Do("wake-up", [&] { device.wakeUp = wanted; });
    }
    void SetMtu(std::uint32_t mtu) override {
        Do("mtu " + std::to_string(mtu), [&] { device.link.mtu = mtu; });
    }
    void SetAddress(const EthernetAddress& address) override {
        Do("address " + MacText(address), [&] { device.link.address = address; });
    }
    void SetLinkModes(const LinkModes& wanted) override {
        Do("link modes", [&] { device.linkModes = wanted; });
    }
    void Wait() override { ++waited; }

    int waited = 0;
    std::vector<std::uint32_t> delays;  // of interrupts, as they were written

  private:
    void Do(const std::string& what, const std::function<void()>& work) {
        before(what);
        done.push_back(what);
        work();
        afterwards(device);
    }
};

class SettingsChange : public testing::Test {
  protected:
    void Want(std::size_t number, const std::string& value) {
        wanted_.settings.at(number).value = value;
        wanted_.settings.at(number).changed = "1";
    }

    Status Change() {
        outcome_ = ChangeSettings(door_, wanted_);
        return static_cast<Status>(outcome_.status);
    }

    std::string Details() const {
        const std::wstring& text = outcome_.error->details;
        return {text.begin(), text.end()};
    }

    std::string Value(std::size_t number) const {
        tavroapi::AdapterSettings settings;
        TellSettings(door_.device, settings);
        return settings.settings.at(number).value;
    }

    FakeDoor door_;
    tavroapi::AdapterSettings wanted_;
    Outcome outcome_;
};

TEST_F(SettingsChange, OnlyMarkedSettingsThatDifferAreWritten) {
    Want(9, "9014");
    wanted_.settings.at(9).changed.clear();
    Want(12, "Enabled");  // as it is
    Want(0, "02:00:5e:00:00:09");
    Want(10, "0512");
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_THAT(door_.done, IsEmpty());
}

TEST_F(SettingsChange, EverySettingReachesItsPartOfTheDevice) {
    Want(0, "06-00-00-00-00-0A");
    Want(1, "1 Gbps");
    Want(4, "Disabled");
    Want(5, "Disabled");
    Want(8, "Auto Negotiation");
    Want(9, "9014");
    Want(10, "1024");
    Want(12, "Disabled");
    Want(13, "Enabled");
    Want(14, "Disabled");
    Want(16, "Disabled");
    Want(17, "4");
    Want(23, "Enabled");
    Want(24, "Enabled");
    Want(25, "2048");
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_THAT(door_.done,
                ElementsAre("features rx-checksum off rx-hashing off rx-lro on "
                            "tx-checksum-ip-generic off tx-tcp-segmentation off "
                            "tx-tcp6-segmentation on",
                            "coalescing", "rings 1024 2048", "channels", "pause", "wake-up",
                            "mtu 9000", "address 06-00-00-00-00-0A", "link modes"));
    EXPECT_EQ(door_.device.coalescing, (Coalescing{false, 0}));
    EXPECT_EQ(door_.device.channels->combined, (Amount{4, 12}));
    EXPECT_TRUE(door_.device.pause->negotiates);
    EXPECT_TRUE(door_.device.wakeUp->at("magic"));
    EXPECT_TRUE(door_.device.wakeUp->at("unicast"));
    EXPECT_TRUE(door_.device.linkModes->negotiates);
    EXPECT_TRUE(door_.device.linkModes->modes.at("1000baseT/Full"));
    EXPECT_FALSE(door_.device.linkModes->modes.at("10000baseT/Full"));
    EXPECT_TRUE(door_.device.linkModes->modes.at("Pause"));
}

TEST_F(SettingsChange, OfASharedFeatureShowsInBothSettings) {
    Want(4, "Rx Enabled");
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_THAT(door_.done, ElementsAre("features tx-checksum-ip-generic off"));
    EXPECT_EQ(Value(4), "Rx Enabled");
    EXPECT_EQ(Value(5), "Rx Enabled");
}

TEST_F(SettingsChange, ThatContradictEachOtherAreRefused) {
    Want(4, "Rx Enabled");
    Want(5, "Tx Enabled");
    EXPECT_EQ(Change(), Status::SettingValueRefused);
    EXPECT_THAT(Details(), HasSubstr("setting 4, setting 5, "));
    EXPECT_THAT(door_.done, IsEmpty());
}

TEST_F(SettingsChange, OfOneWrongValueWritesNothing) {
    Want(9, "9014");
    Want(17, "5");
    EXPECT_EQ(Change(), Status::SettingValueRefused);
    Want(17, "8");
    Want(19, "Disabled");  // is told only
    EXPECT_EQ(Change(), Status::SettingFixed);
    Want(19, "Enabled");
    Want(15, "Disabled");
    EXPECT_EQ(Change(), Status::SettingMissing);
    Want(15, "NA");
    Want(10, "4097");
    EXPECT_EQ(Change(), Status::SettingValueRefused);
    Want(10, "512");
    Want(0, "00-00-5E-00-53-02");  // given away by a maker
    EXPECT_EQ(Change(), Status::SettingValueRefused);
    EXPECT_THAT(door_.done, IsEmpty());
}

TEST_F(SettingsChange, OfTheAddressGoesBackToTheDevicesOwn) {
    for (const char* const own : {"0", "Not Present", "00-00-5E-00-53-01"}) {
        FakeDoor door;
        Want(0, own);
        EXPECT_TRUE(ChangeSettings(door, wanted_).IsDone());
        EXPECT_THAT(door.done, ElementsAre("address 00-00-5E-00-53-01"));
        EXPECT_EQ(AssignedAddressOf(door.device.link), std::nullopt);
    }
}

TEST_F(SettingsChange, OfTheAddressIsRefusedWhereThereIsNoneToGoBackTo) {
    door_.device.link.permanentAddress.reset();
    Want(0, "0");
    EXPECT_EQ(Change(), Status::SettingValueRefused);
    EXPECT_THAT(door_.done, IsEmpty());
}

TEST_F(SettingsChange, ThatTheSystemRefusesIsTakenBackInReverseOrder) {
    Want(4, "Disabled");
    Want(10, "1024");
    Want(9, "9014");
    door_.before = [](const std::string& what) {
        if (what == "mtu 9000") {
            throw SystemFailure(EBUSY, "setting the MTU");
        }
    };
    EXPECT_THROW(Change(), SystemFailure);
    EXPECT_THAT(door_.done, ElementsAre("features rx-checksum off tx-checksum-ip-generic off",
                                        "rings 1024 1024", "mtu 1500", "rings 512 1024",
                                        "features rx-checksum on tx-checksum-ip-generic on"));
    EXPECT_EQ(Value(4), "Rx & Tx Enabled");
    EXPECT_EQ(Value(10), "512");
}

TEST_F(SettingsChange, AreNotCutShortBySignals) {
    const CountedSignals signals(SIGTERM);
    Want(4, "Disabled");
    Want(9, "9014");
    door_.before = [](const std::string&) { raise(SIGTERM); };
    door_.afterwards = [](EthernetDevice&) { EXPECT_EQ(CountedSignals::Seen(), 0); };
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_EQ(door_.done.size(), 2U);
    EXPECT_GT(CountedSignals::Seen(), 0);
}

TEST_F(SettingsChange, WithoutTheRightDoNothing) {
    Want(9, "9014");
    Want(12, "Disabled");
    door_.before = [](const std::string&) {
        throw SystemFailure(EPERM, "setting the features", NetworkRight);
    };
    try {
        Change();
        FAIL() << "the missing right is not told";
    } catch (const SystemFailure& failure) {
        EXPECT_TRUE(failure.IsMissingRight());
        EXPECT_EQ(failure.Right(), "CAP_NET_ADMIN");
    }
    EXPECT_THAT(door_.done, IsEmpty());
}

TEST_F(SettingsChange, ThatTheDriverDoesNotTakeAreTakenBack) {
    Want(12, "Disabled");
    Want(9, "9014");
    door_.afterwards = [](EthernetDevice& device) {
        device.features["tx-tcp-segmentation"].isActive = true;
    };
    EXPECT_EQ(Change(), Status::SystemRefused);
    EXPECT_THAT(Details(), HasSubstr("setting 12"));
    EXPECT_EQ(door_.device.link.mtu, 1500U);
    EXPECT_TRUE(door_.device.features["tx-tcp-segmentation"].isWanted);
    EXPECT_GT(door_.waited, 0);
}

TEST_F(SettingsChange, ThatComeAfterAWhileAreTaken) {
    Want(12, "Disabled");
    door_.told = [this](EthernetDevice& device) {
        device.features["tx-tcp-segmentation"].isActive = door_.waited < 3;
    };
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_EQ(door_.waited, 3);
}

TEST_F(SettingsChange, ThatTheDriverRoundsAreTaken) {
    Want(10, "1000");
    door_.afterwards = [](EthernetDevice& device) { device.rings->receive.present = 1024; };
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_EQ(Value(10), "1024");
}

TEST_F(SettingsChange, ThatTheDriverRoundsFarUpAreTaken) {
    door_.device.rings->receive.present = 1024;
    Want(10, "1025");
    door_.afterwards = [](EthernetDevice& device) { device.rings->receive.present = 2048; };
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_EQ(Value(10), "2048");
}

TEST_F(SettingsChange, ThatTheDriverRoundsToWhatThereWasAreTaken) {
    Want(10, "516");
    door_.afterwards = [](EthernetDevice& device) { device.rings->receive.present = 512; };
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_EQ(Value(10), "512");
    // It could have been a driver that takes a moment.
    EXPECT_GT(door_.waited, 0);
}

// Farther off than rounding to a power of two goes.
TEST_F(SettingsChange, ThatTheDriverIgnoresAreNotRounded) {
    Want(10, "1025");
    door_.afterwards = [](EthernetDevice& device) { device.rings->receive.present = 512; };
    EXPECT_EQ(Change(), Status::SystemRefused);
    EXPECT_THAT(Details(), HasSubstr("setting 10, value \"1025\""));
}

TEST_F(SettingsChange, ThatAreNotThereForAMomentAreReadAgain) {
    Want(10, "1024");
    door_.told = [this](EthernetDevice& device) {
        if (!door_.done.empty() && door_.waited == 0) {
            device.rings.reset();
        }
    };
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_EQ(door_.waited, 1);
    EXPECT_EQ(Value(10), "1024");
}

TEST_F(SettingsChange, ThatAreNotThereForLongAreTakenBack) {
    Want(10, "1024");
    door_.told = [this](EthernetDevice& device) {
        if (door_.done.size() == 1) {
            device.rings.reset();
        }
    };
    EXPECT_EQ(Change(), Status::SystemRefused);
    EXPECT_THAT(door_.done, ElementsAre("rings 1024 1024", "rings 512 1024"));
    EXPECT_EQ(Value(10), "512");
}

TEST_F(SettingsChange, ThatCannotBeReadAfterwardsAreTakenBack) {
    Want(9, "9014");
    door_.told = [this](EthernetDevice&) {
        if (door_.done.size() == 1) {
            throw SystemFailure(EAGAIN, "reading the link");
        }
    };
    EXPECT_THROW(Change(), SystemFailure);
    EXPECT_THAT(door_.done, ElementsAre("mtu 9000", "mtu 1500"));
}

TEST_F(SettingsChange, AreTakenBackWhateverIsThrownAtTheReading) {
    Want(9, "9014");
    door_.told = [this](EthernetDevice&) {
        if (door_.done.size() == 1) {
            throw std::length_error("too long");
        }
    };
    EXPECT_THROW(Change(), std::length_error);
    EXPECT_THAT(door_.done, ElementsAre("mtu 9000", "mtu 1500"));
}

TEST_F(SettingsChange, ThatAreTakenBackMayNotBeReadableForAMoment) {
    Want(9, "9014");
    door_.told = [this](EthernetDevice&) {
        if (!door_.done.empty() && door_.waited < 3) {
            throw SystemFailure(EAGAIN, "reading the link");
        }
    };
    EXPECT_THROW(Change(), SystemFailure);
    EXPECT_EQ(door_.waited, 3);
    EXPECT_EQ(door_.device.link.mtu, 1500U);
}

TEST_F(SettingsChange, ThatCannotBeReadWhenTheyAreTakenBackAreToldSo) {
    Want(9, "9014");
    door_.told = [this](EthernetDevice&) {
        if (!door_.done.empty()) {
            throw SystemFailure(EAGAIN, "reading the link");
        }
    };
    EXPECT_EQ(Change(), Status::SystemRefused);
    EXPECT_THAT(Details(), HasSubstr("reading the link"));
    EXPECT_EQ(door_.device.link.mtu, 1500U);
}

TEST_F(SettingsChange, OfAnInterfaceThatGoesAreToldSo) {
    Want(9, "9014");
    door_.told = [this](EthernetDevice&) {
        if (!door_.done.empty()) {
            throw SystemFailure(ENODEV, "reading the link");
        }
    };
    try {
        Change();
        FAIL() << "that the interface is gone is not told";
    } catch (const SystemFailure& failure) {
        EXPECT_TRUE(failure.IsGone());
    }
    EXPECT_EQ(door_.waited, 0);
}

// What is as it is wanted is not written, but it is wanted.
TEST_F(SettingsChange, ContradictWhatIsToStayAsItIs) {
    Want(4, "Rx Enabled");
    Want(5, "Rx & Tx Enabled");
    EXPECT_EQ(Change(), Status::SettingValueRefused);
    EXPECT_THAT(Details(), HasSubstr("setting 4, setting 5, tx-checksum-ip-generic"));
    EXPECT_THAT(door_.done, IsEmpty());
}

TEST_F(SettingsChange, ThatChangeWhatIsToStayAsItIsAreTakenBack) {
    Want(4, "Rx Enabled");
    Want(12, "Enabled");
    // As a kernel does that has no use for one without the other.
    door_.afterwards = [](EthernetDevice& device) {
        device.features["tx-tcp-segmentation"].isActive =
            device.features["tx-checksum-ip-generic"].isActive;
    };
    EXPECT_EQ(Change(), Status::SystemRefused);
    EXPECT_THAT(Details(), HasSubstr("setting 12, value \"Enabled\""));
    EXPECT_EQ(Value(4), "Rx & Tx Enabled");
    EXPECT_EQ(Value(12), "Enabled");
}

// The device delays without choosing, which is also called enabled.
TEST_F(SettingsChange, OfWhatIsAsItIsWantedWriteNothing) {
    door_.device.coalescing = Coalescing{false, 20};
    door_.device.linkModes->modes["100baseT/Full"] = false;
    Want(0, "02-00-5E-00-00-09");
    Want(1, "Auto Negotiation");
    Want(14, "Enabled");
    Want(9, "9014");
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_THAT(door_.done, ElementsAre("mtu 9000"));
}

TEST_F(SettingsChange, OfWhatThisProcessMayNotKnowNameTheRight) {
    door_.device.wakeUp.reset();
    door_.device.isWakeUpHidden = true;
    Want(9, "9014");
    Want(13, "Enabled");
    try {
        Change();
        FAIL() << "the missing right is not told";
    } catch (const SystemFailure& failure) {
        EXPECT_TRUE(failure.IsMissingRight());
        EXPECT_EQ(failure.Right(), "CAP_NET_ADMIN");
    }
    EXPECT_THAT(door_.done, IsEmpty());
}

TEST_F(SettingsChange, OfTheAddressMayWantTheInterfaceDown) {
    const auto isBusy = [](const std::string& what) {
        if (what == "address 06-00-00-00-00-0A") {
            throw SystemFailure(EBUSY, "setting the address");
        }
    };
    Want(0, "06-00-00-00-00-0A");
    Want(9, "9014");
    door_.before = isBusy;
    EXPECT_EQ(Change(), Status::SystemRefused);
    EXPECT_THAT(std::wstring(outcome_.action.In(tavrolib::Language::English)),
                HasSubstr(L"Take the interface down first"));
    EXPECT_THAT(Details(), HasSubstr("setting the address"));
    EXPECT_EQ(door_.device.link.mtu, 1500U);
    // Of one that is down something else keeps it.
    door_.device.link.isUp = false;
    EXPECT_THROW(Change(), SystemFailure);
}

TEST_F(SettingsChange, ThatCannotBeTakenBackAreToldSo) {
    Want(12, "Disabled");
    Want(9, "9014");
    bool isFirst = true;
    door_.before = [&isFirst](const std::string& what) {
        if (what.starts_with("mtu") || !isFirst) {
            throw SystemFailure(EIO, what);
        }
        isFirst = false;
    };
    EXPECT_EQ(Change(), Status::SystemRefused);
    EXPECT_THAT(Details(), HasSubstr("mtu 9000"));
    EXPECT_EQ(Value(12), "Disabled");
}

TEST_F(SettingsChange, OfModerationWithoutChoosingUseADelay) {
    door_.device.coalescing = Coalescing{{}, 0};
    Want(14, "Enabled");
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_EQ(door_.device.coalescing->isAdaptive, std::nullopt);
    EXPECT_GT(door_.device.coalescing->receiveDelay, 0U);
}

TEST_F(SettingsChange, OfModerationKeepADelayForWhenTheDeviceDoesNotChoose) {
    Want(14, "Disabled");
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_EQ(door_.device.coalescing, (Coalescing{false, 0}));
    door_.done.clear();
    door_.delays.clear();
    Want(14, "Enabled");
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_EQ(door_.device.coalescing->isAdaptive, true);
    EXPECT_GT(door_.device.coalescing->receiveDelay, 0U);
    // Before the device chooses it, since many let nobody set it then.
    EXPECT_EQ(door_.delays.size(), 2U);
}

TEST_F(SettingsChange, OfTheSpeedForcesItWhereNothingIsNegotiated) {
    door_.device.linkModes =
        LinkModes{false, 1000, false, {{"1000baseKX/Full", true}, {"10000baseKR/Full", true}}};
    Want(1, "10 Gbps");
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_FALSE(door_.device.linkModes->negotiates);
    EXPECT_EQ(door_.device.linkModes->speed, 10000U);
    EXPECT_TRUE(door_.device.linkModes->isFullDuplex);
}

// The link is trained for a while, in which no speed is told.
TEST_F(SettingsChange, OfTheSpeedAreTakenWhileTheLinkIsTrained) {
    door_.device.linkModes =
        LinkModes{false, 1000, false, {{"1000baseKX/Full", true}, {"10000baseKR/Full", true}}};
    Want(1, "10 Gbps");
    door_.told = [this](EthernetDevice& device) {
        if (!door_.done.empty()) {
            device.linkModes->speed.reset();
        }
    };
    EXPECT_EQ(Change(), Status::Done);
    EXPECT_THAT(door_.done, ElementsAre("link modes"));
    EXPECT_GT(door_.waited, 0);
}

TEST_F(SettingsChange, OfTheSpeedAreNotTakenWhereTheLinkRunsAtAnother) {
    const LinkModes before{
        false, 1000, false, {{"1000baseKX/Full", true}, {"10000baseKR/Full", true}}};
    door_.device.linkModes = before;
    Want(1, "10 Gbps");
    door_.afterwards = [](EthernetDevice& device) { device.linkModes->speed = 1000; };
    EXPECT_EQ(Change(), Status::SystemRefused);
    EXPECT_EQ(door_.device.linkModes, before);
}

}  // namespace
}  // namespace tavrolinux
