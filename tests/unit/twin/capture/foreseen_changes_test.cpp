// What a change does to a host can be foreseen on its twin: afterwards both tell the same.
//
// Left out of the comparison are counters, which stand still on a twin. The hosts hold nothing that
// no reading operation tells (Oddness::Foreseeable): pending changes, completion codes other than
// "at the restart", what a target asks of those who log in, further portals of a target, sessions
// through other portals than the one that their target tells, targets that a known portal would
// show once more, and the personality that the ports of a partitioned adapter fall back to. A
// virtual port, once created, sees what all ports see; a target that names its initiators is
// hidden from one of them.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <vector>

#include "simulator/host/lookup.h"
#include "simulator/host/restart.h"
#include "tavroapi/described_operations.h"
#include "twin/capture/operation_call.h"
#include "unit/twin/capture/captured_twin.h"
#include "unit/twin/dice.h"
#include "unit/twin/hosts_to_try.h"
#include "unit/twin/random_host.h"

namespace tavrohost_test {
namespace {

using tavroapi::OperationCode;
using tavrolib::Json;
using tavrosim::Host;

constexpr std::uint32_t ForeseenHosts = HostsToTry(60);
constexpr std::uint32_t ChangesPerHost = 4;

// Does something to a host; what the caller is told of it.
using Change = std::function<std::string(Host&)>;

std::string Serve(Host& host, const tavrolib::Call& call) {
    Host fresh = host;
    const tavrolib::Outcome outcome = tavrosim::ServeCall(fresh, call);
    if (outcome.IsDone()) {
        host = std::move(fresh);
    }
    std::string told = "status " + std::to_string(outcome.status);
    if (call.InputType() != nullptr && call.InputType()->completionCode != nullptr) {
        told += ", code " + std::to_string(call.InputType()->completionCode(call.input));
    }
    return told;
}

template <OperationCode Code, class Input>
Change Sends(const std::string& request, const Input& input) {
    return [=](Host& host) {
        Input record = input;
        tavrolib::Call call = tavrohost::OperationCall(Code, request);
        if constexpr (std::is_same_v<Input, std::string>) {
            call.input = record.data();
        } else {
            call.input = &record;
        }
        return Serve(host, call);
    };
}

Change WithRestart(const Change& change) {
    return [=](Host& host) {
        const std::string told = change(host);
        tavrosim::Restart(host);
        return told;
    };
}

// What the host tells, to be changed and written.
template <OperationCode Code>
tavroapi::OutputOf<Code> Read(const Host& host, const std::string& request) {
    tavroapi::OutputOf<Code> record{};
    tavrolib::Call call = tavrohost::OperationCall(Code, request);
    call.output = &record;
    tavrosim::ServeReading(host, call);
    return record;
}

// The host that a change is thought up for.
struct Situation {
    const Host& host;
    Dice& dice;

    std::vector<const tavrosim::Function*> Functions(bool (*isWanted)(const tavrosim::Function&)) {
        std::vector<const tavrosim::Function*> found;
        for (const tavrosim::Adapter& adapter : host.adapters) {
            for (const tavrosim::Port& port : adapter.ports) {
                for (const tavrosim::Function& function : port.functions) {
                    if (isWanted(function)) {
                        found.push_back(&function);
                    }
                }
            }
        }
        return found;
    }

    // One of them; null when there is none.
    const tavrosim::Function* One(bool (*isWanted)(const tavrosim::Function&)) {
        const auto found = Functions(isWanted);
        return found.empty() ? nullptr : dice.Any(found);
    }
    const tavrosim::Function* Ethernet() {
        return One(
            [](const tavrosim::Function& function) { return function.ethernet.has_value(); });
    }
    const tavrosim::Function* Iscsi() {
        return One([](const tavrosim::Function& function) { return function.iscsi.has_value(); });
    }
    const tavrosim::Function* Fcoe() {
        return One([](const tavrosim::Function& function) { return function.fcoe.has_value(); });
    }
    const tavrosim::Function* AnyFunction() {
        return One([](const tavrosim::Function&) { return true; });
    }
};

constexpr std::string_view OnOff[] = {"Enabled", "Disabled"};

// ---- Ethernet ----------------------------------------------------------------------------------

tavroapi::TcpIpSettings StaticSettings(Dice& dice) {
    tavroapi::TcpIpSettings settings;
    settings.dhcpEnabled = "No";
    settings.ipAddress = "198.51.100." + std::to_string(dice.From(1, 250));
    settings.subnetMask = "255.255.0.0";
    settings.defaultGateway = "198.51.100.253";
    settings.dhcpEnabledIPv6 = "No";
    settings.staticIPv6 = "2001:db8:1::" + std::to_string(dice.From(1, 9999));
    settings.staticPrefixLength = "64";
    settings.gatewayIPv6 = "2001:db8:1::fffe";
    return settings;
}

Change SetEthernetTcpIp(Situation at) {
    const auto* const function = at.Ethernet();
    if (function == nullptr) {
        return {};
    }
    tavroapi::TcpIpSettings settings = StaticSettings(at.dice);
    settings.ipVersion = at.dice.Chance(50) ? "1" : "0";
    if (at.dice.Chance(50)) {
        settings.vlanEnabled = "Yes";
        settings.vlanId = std::to_string(at.dice.From(1, 4094));
    }
    const Change change =
        Sends<OperationCode::SetEthernetTcpIp>(tavrosim::KeyOf(*function), settings);
    return at.dice.Chance(50) ? WithRestart(change) : change;
}

Change WriteAdapterSettings(Situation at) {
    const auto* const function = at.Ethernet();
    if (function == nullptr) {
        return {};
    }
    const std::string key = tavrosim::KeyOf(*function);
    auto record = Read<OperationCode::ReadAdapterSettings>(at.host, key);
    for (tavroapi::AdapterSetting& setting : record.settings) {
        if (!setting.choices.empty() && at.dice.Chance(20)) {
            const auto chosen =
                std::next(setting.choices.begin(),
                          at.dice.Below(static_cast<std::uint32_t>(setting.choices.size())));
            const bool isRange = setting.choices.begin()->second == L"min" ||
                                 std::next(setting.choices.begin())->second == L"min";
            setting.value = isRange ? std::to_string(1024)
                                    : std::string(chosen->second.begin(), chosen->second.end());
            setting.changed = "1";
        }
    }
    if (at.dice.Chance(30)) {
        record.settings[0].value = at.dice.Chance(50) ? "0" : "02-00-5E-00-00-7A";
        record.settings[0].changed = "1";
    }
    if (at.dice.Chance(10)) {
        record.settings[30].value = "no temperature";  // is refused
        record.settings[30].changed = "1";
    }
    return Sends<OperationCode::WriteAdapterSettings>(key, record);
}

// ---- iSCSI -------------------------------------------------------------------------------------

Change SetIscsiTcpIp(Situation at) {
    const auto* const function = at.Iscsi();
    if (function == nullptr) {
        return {};
    }
    tavroapi::TcpIpSettings settings = StaticSettings(at.dice);
    settings.vlanEnabled = "Yes";
    settings.vlanId = std::to_string(at.dice.From(1, 4094));
    return Sends<OperationCode::SetIscsiTcpIp>(function->mac, settings);
}

// The record of a portal that a function knows, with the function's key in `key`.
std::optional<tavroapi::PortalRecord> KnownPortal(Situation at, std::string& key) {
    const auto* const function = at.One([](const tavrosim::Function& each) {
        return each.iscsi.has_value() && !each.iscsi->storage.portals.empty();
    });
    if (function == nullptr) {
        return std::nullopt;
    }
    key = function->mac;
    const tavrosim::KnownPortal& portal = at.dice.Any(function->iscsi->storage.portals);
    return tavroapi::PortalRecord{portal.address, portal.port, {}};
}

Change AddKnownPortal(Situation at) {
    std::string key;
    const auto portal = KnownPortal(at, key);
    return portal ? Sends<OperationCode::AddPortal>(key, *portal) : Change();
}

Change RemoveKnownPortal(Situation at) {
    std::string key;
    const auto portal = KnownPortal(at, key);
    return portal ? Sends<OperationCode::RemovePortal>(key, *portal) : Change();
}

Change RemoveKnownTarget(Situation at) {
    std::vector<std::pair<std::string, std::string>> known;  // function and target
    for (const auto* const function :
         at.Functions([](const tavrosim::Function& each) { return each.iscsi.has_value(); })) {
        for (const tavrosim::KnownTarget& target : function->iscsi->storage.targets) {
            known.emplace_back(function->mac, target.name);
        }
    }
    if (known.empty()) {
        return {};
    }
    const auto& [key, target] = at.dice.Any(known);
    return Sends<OperationCode::RemoveTarget>(key, target);
}

Change LogOut(Situation at) {
    const auto* const function = at.One([](const tavrosim::Function& each) {
        return each.iscsi.has_value() && !each.iscsi->storage.sessions.empty();
    });
    if (function == nullptr) {
        return {};
    }
    const tavrosim::IscsiSession& session = at.dice.Any(function->iscsi->storage.sessions);
    const tavroapi::LogoutRecord record{session.target,
                                        {at.dice.Chance(50) ? "0" : std::to_string(session.id)}};
    return Sends<OperationCode::LogOutOfTarget>(function->mac, record);
}

Change AddIsnsServer(Situation at) {
    const auto* const function = at.Iscsi();
    return function == nullptr
               ? Change()
               : Sends<OperationCode::AddIsnsServer>(
                     function->mac, "192.0.2." + std::to_string(at.dice.From(200, 210)));
}

Change RemoveIsnsServer(Situation at) {
    const auto* const function = at.Iscsi();
    return function == nullptr || at.host.isnsServers.empty()
               ? Change()
               : Sends<OperationCode::RemoveIsnsServer>(function->mac,
                                                        at.dice.Any(at.host.isnsServers));
}

Change SetInitiator(Situation at) {
    tavroapi::InitiatorRecord record;
    record.name = "iqn.2015-01.com.example:new" + std::to_string(at.dice.Below(9));
    record.login.multipath = "No";
    return Sends<OperationCode::SetInitiator>({}, record);
}

Change WriteIscsiBoot(Situation at) {
    const auto* const function = at.Iscsi();
    if (function == nullptr) {
        return {};
    }
    namespace iscsi_boot = tavroapi::iscsi_boot;
    auto record = Read<OperationCode::ReadIscsiBoot>(at.host, function->mac);
    record.texts[iscsi_boot::LinkUpDelay] = std::to_string(at.dice.Below(256));
    record.texts[iscsi_boot::BootFromTarget] = at.dice.OneOf(OnOff);
    record.texts[iscsi_boot::Gateway] = "192.0.2.77";
    return Sends<OperationCode::WriteIscsiBoot>(function->mac, record);
}

// ---- FCoE --------------------------------------------------------------------------------------

Change CreateVirtualPorts(Situation at) {
    const auto* const function = at.Fcoe();
    if (function == nullptr) {
        return {};
    }
    std::list<tavroapi::VirtualPortRequest> requests;
    for (std::uint32_t i = at.dice.From(1, 2); i > 0; --i) {
        auto& request = requests.emplace_back();
        request.portWwn = "20:01:00:00:5E:30:00:0" + std::to_string(at.dice.Below(9));
        request.physicalPort = function->fcoe->portWwn;
    }
    return Sends<OperationCode::CreateVirtualPorts>(function->fcoe->portWwn, requests);
}

Change DeleteVirtualPorts(Situation at) {
    const auto* const function = at.One([](const tavrosim::Function& each) {
        return each.fcoe.has_value() && !each.fcoe->virtualPorts.empty();
    });
    if (function == nullptr) {
        return {};
    }
    std::list<tavroapi::VirtualPortRequest> requests(1);
    requests.front().portWwn = at.dice.Any(function->fcoe->virtualPorts).portWwn;
    requests.front().physicalPort = function->fcoe->portWwn;
    return Sends<OperationCode::DeleteVirtualPorts>(function->fcoe->portWwn, requests);
}

Change WriteFip(Situation at) {
    const auto* const function = at.Fcoe();
    tavroapi::FipConfig config;
    config.vlanId = std::to_string(at.dice.Below(5000));
    return function == nullptr ? Change()
                               : Sends<OperationCode::WriteFip>(function->fcoe->portWwn, config);
}

Change WriteDcbConfig(Situation at) {
    const auto* const function = at.Fcoe();
    if (function == nullptr) {
        return {};
    }
    auto config = Read<OperationCode::ReadDcbConfig>(at.host, function->fcoe->portWwn);
    config.state = at.dice.Chance(50) ? "Enable" : "Disable";
    config.priorities = "2 5";
    config.bandwidth = "20,80";
    return Sends<OperationCode::WriteDcbConfig>(function->fcoe->portWwn, config);
}

Change WriteFcoeBoot(Situation at) {
    const auto* const function = at.Fcoe();
    if (function == nullptr) {
        return {};
    }
    auto config = Read<OperationCode::ReadFcoeBoot>(at.host, function->fcoe->portWwn);
    config.bootState = at.dice.OneOf(OnOff);
    config.numberB = at.dice.Below(61);
    config.targets[3] = {"21:00:00:00:00:00:00:02", "1", "Enabled"};
    return Sends<OperationCode::WriteFcoeBoot>(function->fcoe->portWwn, config);
}

// ---- Partitions and personalities --------------------------------------------------------------

Change WritePartitions(Situation at) {
    constexpr std::string_view Personalities[] = {"3", "5", "9"};
    const auto* const function = at.AnyFunction();
    tavroapi::PartitionConfig config;
    config.mode = at.dice.Chance(60) ? "2" : "0";
    for (std::string& flowControl : config.flowControl) {
        flowControl = std::to_string(at.dice.Below(5));
    }
    for (tavroapi::PartitionFunction& each : config.functions) {
        each.personality = at.dice.OneOf(Personalities);
        each.lowerLimit = std::to_string(at.dice.Below(50));
        each.upperLimit = std::to_string(at.dice.From(50, 100));
    }
    config.functions[0].personality = "3";
    return WithRestart(Sends<OperationCode::WritePartitions>(tavrosim::KeyOf(*function), config));
}

Change WritePersonality(Situation at) {
    tavroapi::PersonalitySetting setting;
    setting.value = at.dice.Chance(50) ? "1" : "2";
    return WithRestart(
        Sends<OperationCode::WritePersonality>(tavrosim::KeyOf(*at.AnyFunction()), setting));
}

constexpr struct {
    const char* name;
    Change (*thinkUp)(Situation);
} Changes[] = {
    {"TCP/IP of Ethernet", SetEthernetTcpIp},
    {"adapter settings", WriteAdapterSettings},
    {"TCP/IP of iSCSI", SetIscsiTcpIp},
    {"a known portal once more", AddKnownPortal},
    {"a portal removed", RemoveKnownPortal},
    {"a target removed", RemoveKnownTarget},
    {"logout", LogOut},
    {"an iSNS server", AddIsnsServer},
    {"an iSNS server removed", RemoveIsnsServer},
    {"the initiator", SetInitiator},
    {"iSCSI boot", WriteIscsiBoot},
    {"virtual ports", CreateVirtualPorts},
    {"virtual ports deleted", DeleteVirtualPorts},
    {"FIP", WriteFip},
    {"DCB", WriteDcbConfig},
    {"FCoE boot", WriteFcoeBoot},
    {"partitions", WritePartitions},
    {"a personality", WritePersonality},
};

// ---- The comparison ----------------------------------------------------------------------------

bool IsOfCounters(const Json& answer) {
    for (const OperationCode code :
         {OperationCode::ReadEthernetStatistics, OperationCode::ReadIscsiStatistics,
          OperationCode::ReadFcoeStatistics}) {
        if (answer.value("operation", 0U) == static_cast<std::uint32_t>(code)) {
            return true;
        }
    }
    return false;
}

std::vector<Json> WithoutCounters(const Json& answers) {
    std::vector<Json> others;
    for (const Json& answer : answers) {
        if (!IsOfCounters(answer)) {
            others.push_back(answer);
        }
    }
    return others;
}

void ExpectSame(Host& original, Host& twin) {
    const auto real = WithoutCounters(AnswersOf(original));
    const auto foreseen = WithoutCounters(AnswersOf(twin));
    for (std::size_t i = 0; i < std::min(real.size(), foreseen.size()); ++i) {
        ASSERT_TRUE(real[i] == foreseen[i])
            << "foreseen " << foreseen[i].dump() << "\nbut it is " << real[i].dump();
    }
    ASSERT_EQ(real.size(), foreseen.size());
}

// Of the changes that are possible, the one that was done least often so far.
Change NextChange(const Situation& at, std::map<std::string, int>& done, std::string& name) {
    Change next;
    for (const auto& row : Changes) {
        if (!next || done[row.name] < done[name]) {
            if (Change change = row.thinkUp(at)) {
                next = std::move(change);
                name = row.name;
            }
        }
    }
    return next;
}

TEST(ForeseenChanges, LeaveHostAndTwinAlike) {
    std::map<std::string, int> done;
    for (std::uint32_t seed = 0; seed < ForeseenHosts; ++seed) {
        Host original = RandomHost(seed, Oddness::Foreseeable);
        Host twin = TwinOf(AnswersOf(original));
        Dice dice(seed);
        std::string history = "host " + std::to_string(seed);
        for (std::uint32_t i = 0; i < ChangesPerHost; ++i) {
            std::string name;
            const Change change = NextChange({original, dice}, done, name);
            history += ", " + name;
            SCOPED_TRACE(history);
            const std::string real = change(original);
            ASSERT_EQ(change(twin), real);
            done[name] += real.starts_with("status 0") ? 1 : 0;
            ExpectSame(original, twin);
            if (HasFatalFailure()) {
                return;
            }
        }
    }
    for (const auto& row : Changes) {
        EXPECT_GE(done[row.name], static_cast<int>(ForeseenHosts / 12)) << row.name;
    }
}

}  // namespace
}  // namespace tavrohost_test
