#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "simulator/host/host_file.h"
#include "simulator/model/model.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavrosim {
namespace {

using tavroapi::IscsiParameterRecord;
using tavroapi::IscsiPortRecord;
using tavroapi::LoginOptions;
using tavroapi::LunRecord;
using tavroapi::OperationCode;
using tavroapi::PortalEntry;
using tavroapi::PortalRecord;
using tavroapi::SessionRecord;
using tavroapi::TargetRecord;
using tavrolib::Outcome;
using tavrolib::Status;

constexpr const char* IscsiMac = "02-00-5E-10-00-02";

// A host with one iSCSI port, which knows nothing yet, and three targets on its network.
constexpr const char* StorageHost = R"({
  "name": "h",
  "initiator": {"name": "iqn.example:host"},
  "adapters": [{"name": "Model X", "number": 0, "type": "CNA", "partitionState": 1, "ports": [
    {"name": "Port 1", "functions": [
      {"number": 2, "mac": "02-00-5E-10-00-02", "iscsi": {"tcpIp": {"address": "192.0.2.7", "addressIPv6": "2001:db8::7"}}},
      {"number": 4, "mac": "02-00-5E-10-00-04", "iscsi": {"hardware": {"driver": "bnx2i"}}}]}]}],
  "iscsiTargets": [
    {"name": "open", "alias": "Open", "portalGroup": "7",
     "portals": [{"address": "192.0.2.20"}, {"address": "192.0.2.21", "port": "860"}],
     "luns": [{"number": 0, "vendor": "V", "product": "P", "capacity": "1 GB", "serialNumber": "S"},
              {"number": 5, "blockSize": "4096"}]},
    {"name": "guarded", "portals": [{"address": "192.0.2.20"}],
     "chap": {"targetName": "user", "targetSecret": "secret-secret"}},
    {"name": "mutual", "portals": [{"address": "2001:db8::20"}],
     "chap": {"targetName": "user", "targetSecret": "secret-secret",
              "initiatorName": "host", "initiatorSecret": "another-secret"}}]
})";

// Performs operations as the program does.
class IscsiStorageModel : public testing::Test {
  protected:
    Outcome Perform(OperationCode code, void* input, void* output) {
        const OperationModel* const model = FindModel(static_cast<std::uint32_t>(code));
        if (model->read != nullptr) {
            return model->read(host, mac, input, output);
        }
        Host copy = host;
        Outcome outcome = model->change(copy, mac, input, output);
        if (outcome.IsDone()) {
            host = copy;
        }
        return outcome;
    }

    Outcome AddPortal(const std::string& address, const std::string& port = "3260") {
        PortalRecord record{address, port, {}};
        return Perform(OperationCode::AddPortal, &record, nullptr);
    }

    Outcome RemovePortal(const std::string& address, const std::string& port = "3260") {
        PortalRecord record{address, port, {}};
        return Perform(OperationCode::RemovePortal, &record, nullptr);
    }

    std::vector<std::string> Portals() {
        std::list<PortalEntry> portals;
        EXPECT_TRUE(Perform(OperationCode::ListPortals, nullptr, &portals).IsDone());
        std::vector<std::string> texts;
        for (const PortalEntry& portal : portals) {
            texts.push_back(portal.address + " " + portal.port);
        }
        return texts;
    }

    std::vector<std::string> Targets(OperationCode listing = OperationCode::ListTargets) {
        std::list<TargetRecord> targets;
        EXPECT_TRUE(Perform(listing, nullptr, &targets).IsDone());
        std::vector<std::string> texts;
        for (const TargetRecord& target : targets) {
            texts.push_back(target.name + ", " + target.connectionState + ", " + target.discovery);
        }
        return texts;
    }

    Outcome LogIn(const std::string& name, const std::string& address,
                  const LoginOptions& options = Plain(), std::uint8_t confirmedNew = 0,
                  const std::string& port = "3260", const std::string& immediateData = "No") {
        tavroapi::PlacedTargetLogin place;
        place.record.confirmedNew = confirmedNew;
        place.record.text2 = immediateData;
        place.record.targetName = name;
        place.record.portalAddress = address;
        place.record.portalPort = port;
        place.record.login = options;
        return Perform(OperationCode::LogInToTarget, &place.record, nullptr);
    }

    Outcome LogOut(const std::string& name, const std::list<std::string>& ids) {
        tavroapi::LogoutRecord record{name, ids};
        return Perform(OperationCode::LogOutOfTarget, &record, nullptr);
    }

    Outcome Remove(std::string name) {
        return Perform(OperationCode::RemoveTarget, name.data(), nullptr);
    }

    // A text of the session that is read, its number unless another is asked for; empty when there
    // is no such session.
    std::string Session(const std::string& name, const std::string& id,
                        std::size_t position = tavroapi::iscsi_session::Id) {
        SessionRecord record;
        record.texts[tavroapi::iscsi_session::TargetName] = name;
        record.texts[tavroapi::iscsi_session::Id] = id;
        return Perform(OperationCode::ReadSession, &record, &record).IsDone()
                   ? record.texts[position]
                   : std::string();
    }

    // "address port" of the portal that the target tells of itself.
    std::string PortalOf(std::string name) {
        TargetRecord record;
        EXPECT_TRUE(Perform(OperationCode::ReadTarget, name.data(), &record).IsDone());
        return record.portalAddress + " " + record.portalPort;
    }

    // What the first port's initiator knows.
    IscsiStorage& Storage() { return host.adapters[0].ports[0].functions[0].iscsi->storage; }

    static LoginOptions OnlyOne() { return {"No", "No", "No", "None", {}, {}, {}, {}}; }

    static LoginOptions Plain() { return {"Yes", "No", "No", "None", {}, {}, {}, {}}; }
    static LoginOptions OneWay(const std::string& name, const std::string& secret) {
        return {"Yes", "No", "No", "One-way CHAP", name, secret, {}, {}};
    }
    static LoginOptions Mutual(const std::string& name, const std::string& secret) {
        return {"Yes", "No", "No", "Mutual CHAP", "user", "secret-secret", name, secret};
    }

    Host host = HostFromText(StorageHost);
    std::string mac = IscsiMac;
};

using Texts = std::vector<std::string>;

std::wstring MessageOf(const Outcome& outcome) {
    return outcome.error ? outcome.error->message : std::wstring();
}

TEST_F(IscsiStorageModel, AnAddedPortalDiscoversItsTargets) {
    EXPECT_EQ(Targets(), Texts{});
    EXPECT_TRUE(AddPortal("192.0.2.20").IsDone());
    EXPECT_EQ(Portals(), Texts{"192.0.2.20 3260"});
    EXPECT_EQ(Targets(),
              (Texts{"open, Not connected, SendTargets", "guarded, Not connected, SendTargets"}));
    EXPECT_TRUE(AddPortal("192.0.2.21", "860").IsDone());
    EXPECT_EQ(Portals(), (Texts{"192.0.2.20 3260", "192.0.2.21 860"}));
    EXPECT_EQ(Targets().size(), 2U) << "a target that answers at two portals is known once";
}

TEST_F(IscsiStorageModel, APortalAtWhichNothingAnswersIsKeptAndKnownOnce) {
    EXPECT_TRUE(AddPortal("192.0.2.99").IsDone());
    EXPECT_TRUE(AddPortal("192.0.2.99").IsDone());
    EXPECT_TRUE(AddPortal("192.0.2.20", "861").IsDone());
    EXPECT_EQ(Portals(), (Texts{"192.0.2.99 3260", "192.0.2.20 861"}));
    EXPECT_EQ(Targets(), Texts{});
}

TEST_F(IscsiStorageModel, ARemovedPortalTakesItsTargetsAlong) {
    AddPortal("192.0.2.20");
    AddPortal("2001:db8::20");
    EXPECT_TRUE(RemovePortal("192.0.2.20").IsDone());
    EXPECT_EQ(Portals(), Texts{"2001:db8::20 3260"});
    EXPECT_EQ(Targets(), Texts{"mutual, Not connected, SendTargets"});
    EXPECT_FALSE(RemovePortal("192.0.2.20").IsDone()) << "it is not known any more";
    EXPECT_FALSE(RemovePortal("2001:db8::20", "860").IsDone()) << "another port number";
}

TEST_F(IscsiStorageModel, APortalWithASessionIsNotRemoved) {
    AddPortal("192.0.2.20");
    ASSERT_TRUE(LogIn("open", "192.0.2.20").IsDone());
    EXPECT_FALSE(RemovePortal("192.0.2.20").IsDone());
    EXPECT_EQ(Portals().size(), 1U);
    ASSERT_TRUE(LogOut("open", {"0"}).IsDone());
    EXPECT_TRUE(RemovePortal("192.0.2.20").IsDone());
}

TEST_F(IscsiStorageModel, ATargetTellsThePortalThatItIsReachedThrough) {
    AddPortal("192.0.2.20");
    TargetRecord record;
    std::string name = "open";
    ASSERT_TRUE(Perform(OperationCode::ReadTarget, name.data(), &record).IsDone());
    EXPECT_EQ(record.alias, "Open");
    EXPECT_EQ(record.portalAddress, "192.0.2.20");
    EXPECT_EQ(record.portalPort, "3260");
    EXPECT_EQ(record.portalGroup, "7");
    ASSERT_TRUE(LogIn("open", "192.0.2.21", Plain(), 0, "860").IsDone());
    ASSERT_TRUE(Perform(OperationCode::ReadTarget, name.data(), &record).IsDone());
    EXPECT_EQ(record.connectionState, "Connected");
    EXPECT_EQ(record.portalAddress, "192.0.2.21");
    EXPECT_EQ(record.portalPort, "860");
    name = "mutual";
    EXPECT_FALSE(Perform(OperationCode::ReadTarget, name.data(), &record).IsDone());
}

TEST_F(IscsiStorageModel, ALoginOpensANumberedSession) {
    AddPortal("192.0.2.20");
    EXPECT_TRUE(LogIn(" open ", "192.0.2.20").IsDone()) << "blanks around the name do not count";
    EXPECT_TRUE(LogIn("open", "192.0.2.20").IsDone());
    EXPECT_EQ(Session("open", "1"), "1");
    EXPECT_EQ(Session("open", "2"), "2");
    EXPECT_EQ(Session("open", "0"), "1") << "0 is the first one there is";
    EXPECT_EQ(Session("open", "3"), "");
    EXPECT_EQ(Session("open", "x"), "");
    EXPECT_EQ(Session("guarded", "1"), "");
    EXPECT_EQ(Targets(OperationCode::ListActiveTargets), Texts{"open, Connected, SendTargets"});

    ASSERT_TRUE(LogOut("open", {"2"}).IsDone());
    ASSERT_TRUE(LogIn("open", "192.0.2.20").IsDone());
    EXPECT_EQ(Session("open", "3"), "3") << "numbers are not used again";
}

TEST_F(IscsiStorageModel, ATargetStaysWhileAnotherKnownPortalReachesIt) {
    AddPortal("192.0.2.20");
    AddPortal("192.0.2.99");
    AddPortal("192.0.2.21", "860");
    ASSERT_EQ(PortalOf("open"), "192.0.2.20 3260");
    EXPECT_TRUE(RemovePortal("192.0.2.20").IsDone());
    EXPECT_EQ(Targets(), Texts{"open, Not connected, SendTargets"});
    EXPECT_EQ(PortalOf("open"), "192.0.2.21 860");
    EXPECT_TRUE(RemovePortal("192.0.2.99").IsDone());
    EXPECT_EQ(Targets().size(), 1U);
    EXPECT_TRUE(RemovePortal("192.0.2.21", "860").IsDone());
    EXPECT_EQ(Targets(), Texts{});
}

TEST_F(IscsiStorageModel, AConnectedOrNamedTargetStaysWithoutAPortal) {
    AddPortal("192.0.2.20");
    ASSERT_TRUE(LogIn("open", "192.0.2.21", Plain(), 0, "860").IsDone());
    EXPECT_TRUE(RemovePortal("192.0.2.20").IsDone());
    EXPECT_EQ(Targets(), Texts{"open, Connected, SendTargets"});
    EXPECT_EQ(PortalOf("open"), "192.0.2.21 860");

    ASSERT_TRUE(LogIn("guarded", "192.0.2.20", OneWay("user", "secret-secret"), 1).IsDone());
    ASSERT_TRUE(LogOut("guarded", {"0"}).IsDone());
    AddPortal("192.0.2.20");
    EXPECT_TRUE(RemovePortal("192.0.2.20").IsDone());
    EXPECT_EQ(Targets(), (Texts{"open, Connected, SendTargets", "guarded, Not connected, Static"}));
}

TEST_F(IscsiStorageModel, ATargetThatOnlyItsSessionsReachedIsForgottenWithTheLastOfThem) {
    AddPortal("192.0.2.20");
    ASSERT_TRUE(LogIn("open", "192.0.2.21", Plain(), 0, "860").IsDone());
    ASSERT_TRUE(LogIn("open", "192.0.2.21", Plain(), 0, "860").IsDone());
    ASSERT_TRUE(RemovePortal("192.0.2.20").IsDone());
    ASSERT_TRUE(LogOut("open", {"1"}).IsDone());
    EXPECT_EQ(Targets(), Texts{"open, Connected, SendTargets"});
    ASSERT_TRUE(LogOut("open", {"2"}).IsDone());
    EXPECT_EQ(Targets(), Texts{});
}

TEST_F(IscsiStorageModel, ATargetThatAKnownPortalReachesIsKeptAtTheLogout) {
    AddPortal("192.0.2.20");
    ASSERT_TRUE(LogIn("open", "192.0.2.21", Plain(), 0, "860").IsDone());
    ASSERT_TRUE(RemovePortal("192.0.2.20").IsDone());
    AddPortal("192.0.2.20");
    ASSERT_TRUE(LogOut("open", {"0"}).IsDone());
    EXPECT_EQ(PortalOf("open"), "192.0.2.20 3260");
    ASSERT_TRUE(RemovePortal("192.0.2.20").IsDone());
    EXPECT_EQ(Targets(), Texts{}) << "it belongs to the portal that reached it";
}

TEST_F(IscsiStorageModel, ALogoutLeavesOtherTargetsAsTheyAre) {
    AddPortal("192.0.2.20");
    Storage().targets.push_back({"elsewhere", {"192.0.2.77", "3260"}, "SendTargets"});
    ASSERT_TRUE(LogIn("open", "192.0.2.20").IsDone());
    ASSERT_TRUE(LogOut("open", {"0"}).IsDone());
    EXPECT_EQ(Targets(),
              (Texts{"open, Not connected, SendTargets", "guarded, Not connected, SendTargets",
                     "elsewhere, Not connected, SendTargets"}));
}

TEST_F(IscsiStorageModel, APortalKeepsTheLoginOptionsThatWereSaidLast) {
    LoginOptions options = Mutual("host", "another-secret");
    options.multipath.clear();
    options.headerDigest = "CRC32C";
    PortalRecord record{"192.0.2.20", "3260", options};
    ASSERT_TRUE(Perform(OperationCode::AddPortal, &record, nullptr).IsDone());
    host = HostFromText(TextFromHost(host));
    const Login login = Storage().portals.at(0).login;
    EXPECT_EQ(login.multipath, "Yes") << "what an empty text stands for";
    EXPECT_EQ(login.headerDigest, "CRC32C");
    EXPECT_EQ(login.initiatorSecret, "another-secret");
    AddPortal("192.0.2.20");
    EXPECT_EQ(Portals().size(), 1U);
    EXPECT_EQ(Storage().portals.at(0).login.initiatorSecret, "");
}

TEST_F(IscsiStorageModel, ASessionsNumberIsAboveAllThatTheFileHas) {
    AddPortal("192.0.2.20");
    IscsiSession open;
    open.id = 7;
    open.target = "guarded";
    Storage().sessions.push_back(open);
    ASSERT_TRUE(LogIn("open", "192.0.2.20").IsDone());
    EXPECT_EQ(Session("open", "0"), "8");
    Storage().lastSessionId = 20;
    ASSERT_TRUE(LogIn("open", "192.0.2.20").IsDone());
    EXPECT_EQ(Session("open", "21"), "21");
}

TEST_F(IscsiStorageModel, ALoginIsRefusedWhenNoSessionNumberIsLeft) {
    constexpr auto Highest = std::numeric_limits<std::uint32_t>::max();
    Storage().lastSessionId = Highest - 1;
    ASSERT_TRUE(LogIn("open", "192.0.2.20", Plain(), 1).IsDone());
    EXPECT_EQ(Session("open", "0"), "4294967295");
    AddPortal("192.0.2.20");
    const Outcome refused = LogIn("open", "192.0.2.20");
    EXPECT_EQ(refused.status, static_cast<std::uint32_t>(Status::LoginRefused));
    EXPECT_EQ(MessageOf(refused), L"The host file has no session number left.");
    EXPECT_EQ(Storage().sessions.size(), 1U);
    EXPECT_EQ(Storage().lastSessionId, Highest);
}

TEST_F(IscsiStorageModel, WithoutMultipathAnInitiatorHasOneSessionWithATarget) {
    const auto sessionExists = static_cast<std::uint32_t>(Status::SessionExists);
    const auto refused = static_cast<std::uint32_t>(Status::LoginRefused);
    AddPortal("192.0.2.20");
    EXPECT_TRUE(LogIn("open", "192.0.2.20", OnlyOne()).IsDone());
    const Outcome repeated = LogIn("open", "192.0.2.20", OnlyOne());
    EXPECT_EQ(repeated.status, sessionExists);
    EXPECT_EQ(repeated.error->details,
              L"target \"open\", address \"192.0.2.20\", port number \"3260\", session 1");
    EXPECT_EQ(LogIn("open", "192.0.2.20").status, sessionExists) << "the first wants to be alone";
    EXPECT_EQ(LogIn("open", "192.0.2.21", Plain(), 0, "860").status, refused);
    EXPECT_EQ(Session("open", "2"), "");
    ASSERT_TRUE(LogOut("open", {"1"}).IsDone());
    EXPECT_TRUE(LogIn("open", "192.0.2.21", Plain(), 0, "860").IsDone());
    EXPECT_TRUE(LogIn("open", "192.0.2.20").IsDone());
    EXPECT_EQ(LogIn("open", "192.0.2.20", OnlyOne()).status, sessionExists)
        << "the reason is the repetition, not the session through the other portal";
    EXPECT_EQ(LogIn("open", "192.0.2.21", OnlyOne(), 0, "860").status, sessionExists);
}

TEST_F(IscsiStorageModel, AnotherInitiatorNameIsAnotherInitiator) {
    AddPortal("192.0.2.20");
    ASSERT_TRUE(LogIn("open", "192.0.2.20", OnlyOne()).IsDone());
    host.initiator.name = "iqn.example:other";
    EXPECT_TRUE(LogIn("open", "192.0.2.20", OnlyOne()).IsDone());
    EXPECT_FALSE(LogIn("open", "192.0.2.20", OnlyOne()).IsDone());
    EXPECT_EQ(Session("open", "1", tavroapi::iscsi_session::InitiatorName), "iqn.example:host");
    EXPECT_EQ(Session("open", "2", tavroapi::iscsi_session::InitiatorName), "iqn.example:other");
}

TEST_F(IscsiStorageModel, TextsOfALoginThatSayNothingMeanTheUsualValues) {
    AddPortal("192.0.2.20");
    ASSERT_TRUE(LogIn("open", "192.0.2.20", {}, 0, "3260", "").IsDone());
    ASSERT_TRUE(LogIn("open", "192.0.2.20", {}, 0, "3260", "No").IsDone())
        << "without a word several sessions are allowed";
    // A host file may hold such texts as well.
    IscsiSession silent;
    silent.id = 3;
    silent.target = "open";
    for (std::string* text :
         {&silent.authentication, &silent.headerDigest, &silent.dataDigest, &silent.multipath}) {
        text->clear();
    }
    Storage().sessions.push_back(silent);
    using namespace tavroapi::iscsi_session;
    for (const char* id : {"1", "3"}) {
        EXPECT_EQ(Session("open", id, HeaderDigest), "No");
        EXPECT_EQ(Session("open", id, DataDigest), "No");
        EXPECT_EQ(Session("open", id, Multipath), "Yes");
        EXPECT_EQ(Session("open", id, Authentication), "None");
        EXPECT_EQ(Session("open", id, ImmediateData), "Yes") << "as the port's default is";
        EXPECT_EQ(Session("open", id, InitiatorName), "iqn.example:host");
    }
    EXPECT_EQ(Session("open", "2", ImmediateData), "No");
}

TEST_F(IscsiStorageModel, ALoginToWhatIsNotThereFails) {
    AddPortal("192.0.2.20");
    EXPECT_FALSE(LogIn("missing", "192.0.2.20", Plain(), 1).IsDone());
    EXPECT_FALSE(LogIn("open", "192.0.2.22").IsDone()) << "another address";
    EXPECT_FALSE(LogIn("open", "192.0.2.21").IsDone()) << "another port number";
    EXPECT_FALSE(LogIn("Open", "192.0.2.20", Plain(), 1).IsDone()) << "another letter case";
    EXPECT_EQ(Targets(OperationCode::ListActiveTargets), Texts{});
}

TEST_F(IscsiStorageModel, AnUndiscoveredTargetNeedsTheConfirmation) {
    EXPECT_FALSE(LogIn("open", "192.0.2.20").IsDone());
    EXPECT_TRUE(LogIn("open", "192.0.2.20", Plain(), 1).IsDone());
    EXPECT_EQ(Targets(), Texts{"open, Connected, Static"});
}

TEST_F(IscsiStorageModel, AGuardedTargetWantsTheNameAndTheSecret) {
    AddPortal("192.0.2.20");
    EXPECT_EQ(MessageOf(LogIn("guarded", "192.0.2.20")), L"The target wants CHAP authentication.");
    EXPECT_EQ(MessageOf(LogIn("guarded", "192.0.2.20", OneWay("other", "secret-secret"))),
              L"The target does not know this target CHAP name.");
    EXPECT_EQ(MessageOf(LogIn("guarded", "192.0.2.20", OneWay("user", "wrong-secret"))),
              L"The target CHAP secret does not match.");
    EXPECT_EQ(MessageOf(LogIn("guarded", "192.0.2.20", Mutual("host", "another-secret"))),
              L"The target does not offer mutual CHAP authentication.");
    EXPECT_EQ(Session("guarded", "0"), "");
    EXPECT_TRUE(LogIn("guarded", "192.0.2.20", OneWay("user", "secret-secret")).IsDone());
    EXPECT_EQ(Session("guarded", "0"), "1");
}

TEST_F(IscsiStorageModel, AMutualTargetWantsBothNamesAndSecrets) {
    AddPortal("2001:db8::20");
    EXPECT_EQ(MessageOf(LogIn("mutual", "2001:db8::20", OneWay("user", "secret-secret"))),
              L"The target wants mutual CHAP authentication.");
    EXPECT_EQ(MessageOf(LogIn("mutual", "2001:db8::20", Mutual("other", "another-secret"))),
              L"The target does not know this initiator CHAP name.");
    EXPECT_EQ(MessageOf(LogIn("mutual", "2001:db8::20", Mutual("host", "wrong-secret"))),
              L"The initiator CHAP secret does not match.");
    EXPECT_TRUE(LogIn("mutual", "2001:db8::20", Mutual("host", "another-secret")).IsDone());
}

TEST_F(IscsiStorageModel, ASessionTellsHowItWasOpened) {
    AddPortal("192.0.2.20");
    LoginOptions options = OneWay("user", "secret-secret");
    options.headerDigest = "CRC32C";
    options.multipath = "No";
    ASSERT_TRUE(LogIn("guarded", "192.0.2.20", options).IsDone());
    SessionRecord record;
    record.texts[tavroapi::iscsi_session::TargetName] = "guarded";
    record.texts[tavroapi::iscsi_session::Id] = "0";
    ASSERT_TRUE(Perform(OperationCode::ReadSession, &record, &record).IsDone());
    const auto holds = [&](const char* text) {
        return std::ranges::find(record.texts, text) != record.texts.end();
    };
    for (const char* text : {"guarded", "1", "192.0.2.20", "3260", "iqn.example:host", "192.0.2.7",
                             "One-way CHAP", "user", "CRC32C", "SendTargets"}) {
        EXPECT_TRUE(holds(text)) << text;
    }
    EXPECT_FALSE(holds("secret-secret"));
    EXPECT_FALSE(holds("2001:db8::7")) << "the portal is reached by IPv4";
}

TEST_F(IscsiStorageModel, ALogoutEndsTheNamedSessionsOrAllOrNone) {
    AddPortal("192.0.2.20");
    for (int count = 0; count < 4; ++count) {
        ASSERT_TRUE(LogIn("open", "192.0.2.20").IsDone());
    }
    EXPECT_FALSE(LogOut("open", {"1", "9"}).IsDone());
    EXPECT_EQ(Session("open", "1"), "1") << "one unknown number, and none is ended";
    EXPECT_FALSE(LogOut("open", {",1"}).IsDone());
    EXPECT_FALSE(LogOut("guarded", {"1"}).IsDone()) << "the session is another target's";
    EXPECT_TRUE(LogOut("open", {"1", "3"}).IsDone());
    EXPECT_EQ(Session("open", "1"), "");
    EXPECT_EQ(Session("open", "2"), "2");
    EXPECT_EQ(Session("open", "3"), "");
    EXPECT_EQ(Session("open", "4"), "4");
    EXPECT_TRUE(LogOut("open", {"0"}).IsDone());
    EXPECT_EQ(Targets(OperationCode::ListActiveTargets), Texts{});
    EXPECT_FALSE(LogOut("open", {"0"}).IsDone()) << "there is none left";
    EXPECT_FALSE(LogOut("missing", {"0"}).IsDone());
}

TEST_F(IscsiStorageModel, ARemovedTargetIsForgotten) {
    AddPortal("192.0.2.20");
    ASSERT_TRUE(LogIn("open", "192.0.2.20").IsDone());
    EXPECT_FALSE(Remove("open").IsDone()) << "there is a session";
    ASSERT_TRUE(LogOut("open", {"1"}).IsDone());
    EXPECT_TRUE(Remove("open").IsDone());
    EXPECT_EQ(Targets(), Texts{"guarded, Not connected, SendTargets"});
    EXPECT_FALSE(Remove("open").IsDone());
}

TEST_F(IscsiStorageModel, LunsBelongToTheirTarget) {
    AddPortal("192.0.2.20");
    std::list<LunRecord> luns;
    std::string name = "open";
    ASSERT_TRUE(Perform(OperationCode::ListLuns, name.data(), &luns).IsDone());
    ASSERT_EQ(luns.size(), 2U);
    EXPECT_EQ(luns.front().texts,
              (std::array<std::string, 7>{"0", "V", "P", "1 GB", "512", "S", "Not connected"}));
    EXPECT_EQ(luns.back().texts,
              (std::array<std::string, 7>{"5", "", "", "", "4096", "", "Not connected"}));
    ASSERT_TRUE(LogIn("open", "192.0.2.20").IsDone());
    ASSERT_TRUE(Perform(OperationCode::ListLuns, name.data(), &luns).IsDone());
    EXPECT_EQ(luns.front().texts[tavroapi::iscsi_lun::ConnectionState], "Connected");
    name = "guarded";
    ASSERT_TRUE(Perform(OperationCode::ListLuns, name.data(), &luns).IsDone());
    EXPECT_TRUE(luns.empty());
    name = "missing";
    EXPECT_FALSE(Perform(OperationCode::ListLuns, name.data(), &luns).IsDone());
}

TEST_F(IscsiStorageModel, StatisticsMove) {
    const auto read = [&] {
        IscsiParameterRecord record;
        EXPECT_TRUE(Perform(OperationCode::ReadIscsiStatistics, nullptr, &record).IsDone());
        std::vector<std::uint64_t> numbers;
        for (const std::string& text : record.texts) {
            numbers.push_back(std::stoull(text));
        }
        return numbers;
    };
    const auto first = read();
    const auto second = read();
    EXPECT_GT(second[0], first[0]);
    EXPECT_GT(second[2], first[2]);
    EXPECT_EQ(second[4], first[4]) << "without a session no command is sent";
    AddPortal("192.0.2.20");
    ASSERT_TRUE(LogIn("open", "192.0.2.20").IsDone());
    const auto third = read();
    EXPECT_GT(third[4], second[4]);
    EXPECT_EQ(third[8], 1U) << "logins";
    ASSERT_TRUE(LogOut("open", {"0"}).IsDone());
    EXPECT_EQ(read()[9], 1U) << "logouts";
}

TEST_F(IscsiStorageModel, ADriverWithoutStatisticsRefusesThem) {
    mac = "02-00-5E-10-00-04";
    IscsiPortRecord port;
    ASSERT_TRUE(Perform(OperationCode::ReadIscsiPort, nullptr, &port).IsDone());
    EXPECT_EQ(port.texts[tavroapi::iscsi_port::Driver], "bnx2i");
    IscsiParameterRecord record;
    EXPECT_FALSE(Perform(OperationCode::ReadIscsiStatistics, nullptr, &record).IsDone());
}

TEST_F(IscsiStorageModel, APortTellsItsTcpIpSettings) {
    TcpIp& settings = host.adapters[0].ports[0].functions[0].iscsi->tcpIp;
    settings.vlanId = "17";
    settings.subnetMask = "255.255.255.128";
    IscsiPortRecord port;
    ASSERT_TRUE(Perform(OperationCode::ReadIscsiPort, nullptr, &port).IsDone());
    for (const char* text :
         {"192.0.2.7", "2001:db8::7", "17", "255.255.255.128", IscsiMac, "Model X"}) {
        EXPECT_NE(std::ranges::find(port.texts, text), port.texts.end()) << text;
    }
}

TEST_F(IscsiStorageModel, PortsKnowTheirOwnPortalsOnly) {
    AddPortal("192.0.2.20");
    mac = "02-00-5E-10-00-04";
    EXPECT_EQ(Portals(), Texts{});
    EXPECT_EQ(Targets(), Texts{});
}

TEST_F(IscsiStorageModel, AnUnknownPortIsRefusedByEveryOperation) {
    mac = "02-00-5E-10-00-99";
    PortalRecord portal;
    tavroapi::PlacedTargetLogin login;
    tavroapi::LogoutRecord logout;
    SessionRecord session;
    std::string name = "open";
    std::list<PortalEntry> portals;
    std::list<TargetRecord> targets;
    std::list<LunRecord> luns;
    TargetRecord target;
    IscsiPortRecord port;
    IscsiParameterRecord parameters;
    const std::tuple<OperationCode, void*, void*> calls[] = {
        {OperationCode::ReadIscsiPort, nullptr, &port},
        {OperationCode::ReadIscsiDefaults, nullptr, &parameters},
        {OperationCode::ReadIscsiStatistics, nullptr, &parameters},
        {OperationCode::ListPortals, nullptr, &portals},
        {OperationCode::AddPortal, &portal, nullptr},
        {OperationCode::RemovePortal, &portal, nullptr},
        {OperationCode::ListTargets, nullptr, &targets},
        {OperationCode::ListActiveTargets, nullptr, &targets},
        {OperationCode::ReadTarget, name.data(), &target},
        {OperationCode::LogInToTarget, &login.record, nullptr},
        {OperationCode::RemoveTarget, name.data(), nullptr},
        {OperationCode::ReadSession, &session, &session},
        {OperationCode::LogOutOfTarget, &logout, nullptr},
        {OperationCode::ListLuns, name.data(), &luns},
    };
    for (const auto& [code, input, output] : calls) {
        const Outcome outcome = Perform(code, input, output);
        EXPECT_EQ(outcome.status, static_cast<std::uint32_t>(Status::UnknownIdentifier))
            << static_cast<std::uint32_t>(code);
    }
}

TEST_F(IscsiStorageModel, EverythingSurvivesInTheHostFile) {
    AddPortal("192.0.2.20");
    ASSERT_TRUE(LogIn("guarded", "192.0.2.20", OneWay("user", "secret-secret")).IsDone());
    IscsiParameterRecord record;
    ASSERT_TRUE(Perform(OperationCode::ReadIscsiStatistics, nullptr, &record).IsDone());
    const std::string text = TextFromHost(host);
    EXPECT_EQ(TextFromHost(HostFromText(text)), text);
    host = HostFromText(text);
    EXPECT_EQ(Portals(), Texts{"192.0.2.20 3260"});
    EXPECT_EQ(Session("guarded", "0"), "1");
}

}  // namespace
}  // namespace tavrosim
