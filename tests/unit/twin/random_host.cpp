#include "unit/twin/random_host.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "simulator/host/host_file.h"
#include "simulator/host/numerals.h"
#include "tavroapi/codes.h"
#include "unit/twin/dice.h"

namespace tavrohost_test {
namespace {

using tavrosim::Adapter;
using tavrosim::Function;
using tavrosim::Host;
using tavrosim::Port;

constexpr std::string_view OnOff[] = {"Enabled", "Disabled"};
constexpr std::string_view YesNo[] = {"Yes", "No"};
constexpr std::string_view OddTexts[] = {"",
                                         " ",
                                         "0",
                                         "NA",
                                         "\xE9\xFF raw bytes",
                                         "a \"quoted\" name",
                                         "a\nb\tc",
                                         "caf\xC3\xA9",
                                         "\x1B[2J",
                                         "18446744073709551616",
                                         "-1",
                                         "None",
                                         "\xE6\x97\xA5\xE6\x9C\xAC",
                                         "%s%n",
                                         "Enabled",
                                         "a longer text with several words, and a comma"};

// Makes one host.
class HostMaker {
  public:
    HostMaker(std::uint32_t seed, Oddness oddness) : dice_(seed), oddness_(oddness) {}

    Host Make() {
        host_.name = "host-" + std::to_string(dice_.Below(1000));
        host_.initiator.name = "iqn.2015-01.com.example:initiator" + std::to_string(dice_.Below(9));
        host_.initiator.login = LoginWithSecrets();
        for (std::uint32_t i = dice_.Below(3); i > 0; --i) {
            host_.isnsServers.push_back("192.0.2." + std::to_string(200 + i));
        }
        MakeNetwork();
        const std::uint32_t adapters = dice_.From(IsOdd() ? 0 : 1, 2);
        for (std::uint32_t i = 0; i < adapters; ++i) {
            MakeAdapter(i);
        }
        // What no function of the host can see is told nowhere.
        if (IsOdd() || HasAny(&Function::fcoe)) {
            MakeFabric();
        }
        if (!IsOdd() && !HasAny(&Function::iscsi)) {
            host_.isnsServers.clear();
        }
        if (IsOdd()) {
            Disturb(host_, {});
            for (std::size_t i = 0; i < host_.adapters.size(); ++i) {
                host_.adapters[i].name += std::to_string(i);
            }
        }
        tavrosim::CheckHost(host_);
        return std::move(host_);
    }

  private:
    bool IsOdd() const { return oddness_ == Oddness::Anything; }
    // Whether something happens that nobody could foresee.
    bool Unforeseen(std::uint32_t percent) { return dice_.Chance(percent) && IsOdd(); }

    // Whether a function of the host has that part.
    bool HasAny(auto part) const {
        return std::ranges::any_of(host_.adapters, [&](const Adapter& adapter) {
            return std::ranges::any_of(adapter.ports, [&](const Port& port) {
                return std::ranges::any_of(port.functions, [&](const Function& function) {
                    return (function.*part).has_value();
                });
            });
        });
    }

    tavrosim::Login LoginWithSecrets() {
        constexpr std::string_view Ways[] = {"None", "One-way CHAP", "Mutual CHAP"};
        constexpr std::string_view Digests[] = {"No", "CRC32C"};
        tavrosim::Login login;
        login.multipath = dice_.OneOf(YesNo);
        login.headerDigest = dice_.OneOf(Digests);
        login.dataDigest = dice_.OneOf(Digests);
        login.authentication = dice_.OneOf(Ways);
        login.targetChapName = "chap-name";
        login.targetSecret = "never-told-secret";
        login.initiatorChapName = "other-name";
        login.initiatorSecret = "never-told-secret";
        return login;
    }

    // ---- Adapters ------------------------------------------------------------------------------

    void MakeAdapter(std::uint32_t index) {
        constexpr std::string_view Models[] = {"Tavro CNA 4610K", "Tavro CNA 4910K",
                                               "Tavro CNA 3910K", "Tavro NIC 100"};
        Adapter& adapter = host_.adapters.emplace_back();
        adapter.name = dice_.OneOf(Models) + (index == 0 ? "" : " #" + std::to_string(index));
        adapter.number = index;
        adapter.type = dice_.Chance(80) ? "CNA" : "Ethernet";
        adapter.state = dice_.Chance(80) ? "" : std::to_string(dice_.Below(9));
        MakeCard(adapter);
        adapter.ports.resize(dice_.Chance(10) ? 4 : dice_.From(1, 2));
        const bool isDivided = adapter.type == "CNA" && dice_.Chance(50);
        adapter.partitionState = !isDivided         ? tavroapi::NotPartitioned
                                 : dice_.Chance(20) ? tavroapi::PartitionedForGood
                                                    : tavroapi::Partitioned;
        if (isDivided || dice_.Chance(50) || !IsOdd()) {
            adapter.partitions = MakePartitions(isDivided);
        }
        for (std::size_t i = 0; i < adapter.ports.size(); ++i) {
            MakePort(adapter, i);
        }
        if (adapter.partitionState != tavroapi::PartitionedForGood && Unforeseen(20)) {
            adapter.pendingPartitions = MakePartitions(dice_.Chance(50));
        }
    }

    void MakeCard(Adapter& adapter) {
        tavrosim::Card& card = adapter.card.emplace();
        card.serialNumber = dice_.Chance(50) ? "SN" + std::to_string(dice_.Below(100000)) : "";
        card.partNumber = dice_.Chance(50) ? "PN-" + std::to_string(dice_.Below(99)) : "TV-10G";
        card.hardwareRevision = dice_.Chance(50) ? "1" : "C2";
        card.firmwareVersion = "5.2." + std::to_string(dice_.Below(9)) + ".0";
        card.drivers.version = "5.2.3." + std::to_string(dice_.Below(9));
        if (Unforeseen(50)) {
            // A driver is told by functions of its kind only.
            card.drivers.iscsi = dice_.Chance(50) ? "bnx2i" : "another";
            card.drivers.fcoe = "lpfc";
        }
    }

    tavrosim::Partitions MakePartitions(bool isDivided) {
        constexpr std::string_view Flow[] = {"Auto", "Tx Enabled", "Rx Enabled", "Tx/Rx Enabled",
                                             "Disabled"};
        tavrosim::Partitions partitions;
        // Nobody tells how a host takes changes over: the twin expects it to wait for the restart.
        partitions.completionCode = IsOdd() ? CompletionCode() : tavroapi::AppliedAtRestart;
        partitions.mode = isDivided ? tavrosim::PartitionedMode : tavrosim::SingleFunctionMode;
        for (std::string& flowControl : partitions.flowControl) {
            flowControl = dice_.OneOf(Flow);
        }
        for (std::size_t i = 0; i < partitions.functions.size(); ++i) {
            // Only Ethernet functions tell all of a card.
            partitions.functions[i] = {i == 0 ? tavrosim::EthernetPersonality : Personality(),
                                       std::to_string(dice_.Below(101)),
                                       std::to_string(dice_.Below(101))};
        }
        return partitions;
    }

    std::int32_t CompletionCode() {
        return dice_.Chance(40)   ? tavroapi::AppliedAtRestart
               : dice_.Chance(20) ? tavroapi::ValueRefused
                                  : 0;
    }

    std::string Personality() {
        constexpr std::string_view Names[] = {"Ethernet", "iSCSI", "FCoE"};
        return dice_.OneOf(Names);
    }

    std::string PortPersonality() {
        return dice_.Chance(50) ? tavrosim::IscsiPersonality : tavrosim::FcoePersonality;
    }

    void MakePort(Adapter& adapter, std::size_t index) {
        Port& port = adapter.ports[index];
        port.name = "Port " + std::to_string(index + 1);
        tavrosim::PortLink& link = port.link.emplace();
        const auto number = static_cast<std::uint32_t>(index);
        const auto ports = static_cast<std::uint32_t>(adapter.ports.size());
        tavrosim::Resources& resources = port.resources.emplace();
        resources.completionCode = IsOdd() ? CompletionCode() : tavroapi::AppliedAtRestart;
        if (adapter.partitionState != tavroapi::NotPartitioned) {
            // The personality of a port that is divided is told nowhere; it stays as usual.
            for (std::uint32_t f = number; f < 8; f += ports) {
                AddFunction(adapter, port, f, adapter.partitions->functions[f].personality);
            }
        } else {
            resources.personality = PortPersonality();
            AddFunction(adapter, port, number, tavrosim::EthernetPersonality);
            if (adapter.type == "CNA") {
                AddFunction(adapter, port, number + ports, resources.personality);
                if (dice_.Chance(30)) {
                    AddFunction(adapter, port, number + 2 * ports, PortPersonality());
                }
            }
        }
        // The highest speed of a link that is down is told by some kinds of functions only.
        if (dice_.Chance(20)) {
            link.status = "Down";
        } else {
            link.maximumSpeed = dice_.Chance(50) ? "10 Gbps" : "25 Gbps";
        }
        if (Unforeseen(20)) {
            resources.pendingPersonality = PortPersonality();
        }
        if (Unforeseen(10)) {
            port.functions.clear();
        }
    }

    // ---- Functions -----------------------------------------------------------------------------

    std::string MacText(std::uint64_t address) {
        const bool small = dice_.Chance(30);
        const char separator = dice_.Chance(70) ? '-' : ':';
        std::string digits = tavrosim::HexOf(address, 12);
        std::string text;
        for (std::size_t i = 0; i < digits.size(); i += 2) {
            text += (i == 0 ? std::string() : std::string(1, separator)) + digits.substr(i, 2);
        }
        if (small) {
            std::ranges::transform(text, text.begin(), [](char digit) {
                return digit >= 'A' && digit <= 'F' ? static_cast<char>(digit - 'A' + 'a') : digit;
            });
        }
        return text;
    }

    static std::string WwnText(std::uint64_t wwn) {
        const std::string digits = tavrosim::HexOf(wwn, 16);
        std::string text;
        for (std::size_t i = 0; i < digits.size(); i += 2) {
            text += (i == 0 ? "" : ":") + digits.substr(i, 2);
        }
        return text;
    }

    void AddFunction(Adapter& adapter, Port& port, std::uint32_t number,
                     const std::string& personality) {
        constexpr std::uint64_t FirstMac = 0x02005E100000;
        const std::uint64_t address = FirstMac + 0x100ULL * adapter.number + number;
        Function& function = port.functions.emplace_back();
        function.number = number;
        function.mac = MacText(address);
        if (personality == tavrosim::EthernetPersonality) {
            MakeEthernet(function.ethernet.emplace());
        } else if (personality == tavrosim::IscsiPersonality) {
            if (adapter.partitionState == tavroapi::NotPartitioned && dice_.Chance(30) &&
                port.functions.size() == 2) {
                function.mac = port.functions.front().mac;  // iSCSI in software
            }
            MakeIscsi(function.iscsi.emplace());
        } else {
            constexpr std::uint64_t PortNumber = 0x1000ULL << 48U;
            constexpr std::uint64_t NodeNumber = 0x2000ULL << 48U;
            tavrosim::FcoePart& part = function.fcoe.emplace();
            part.portWwn = WwnText(PortNumber | address);
            part.nodeWwn = WwnText(NodeNumber | address);
            MakeFcoe(part);
        }
    }

    tavrosim::TcpIp MakeTcpIp() {
        tavrosim::TcpIp settings;
        if (dice_.Chance(60)) {
            settings.dhcp = dice_.OneOf(YesNo);
            settings.address = "198.51.100." + std::to_string(++addresses_);
            settings.subnetMask = "255.255.255.0";
            settings.gateway = "198.51.100.254";
        }
        if (dice_.Chance(40)) {
            settings.dhcpIPv6 = dice_.OneOf(YesNo);
            settings.addressIPv6 = "2001:db8:1::" + std::to_string(++addresses_);
            settings.gatewayIPv6 = "2001:db8:1::ffff";
        }
        settings.vlanId = dice_.Chance(50) ? "0" : std::to_string(dice_.From(1, 4094));
        settings.maxFrameSize = dice_.Chance(50) ? "1500" : "9000";
        return settings;
    }

    void MakeEthernet(tavrosim::EthernetPart& part) {
        constexpr std::string_view Speeds[] = {"Auto Negotiation", "1 Gbps", "10 Gbps"};
        constexpr std::string_view Jumbo[] = {"1514", "4088", "9014"};
        part.interfaceName = "eth" + std::to_string(interfaces_++);
        part.tcpIp = MakeTcpIp();
        if (Unforeseen(20)) {
            part.tcpIp.pendingVlanId = std::to_string(dice_.Below(4095));
        }
        if (dice_.Chance(50)) {
            part.hardware.emplace().pciLocation =
                "bus " + std::to_string(interfaces_) + ", device 1, function 0";
        }
        if (dice_.Chance(60)) {
            tavrosim::EthernetSettings& settings = part.settings.emplace();
            settings.speed = dice_.OneOf(Speeds);
            settings.jumboPacket = dice_.OneOf(Jumbo);
            settings.receiveBuffers = std::to_string(64 + 8 * dice_.Below(50));
            settings.wakeOnMagicPacket = dice_.OneOf(OnOff);
            settings.locallyAdministeredAddress =
                dice_.Chance(30) ? "02-00-5E-00-00-0" + std::to_string(dice_.Below(9))
                                 : "Not Present";
            settings.temperature = dice_.Chance(30) ? "47 C" : "NA";
        }
        if (dice_.Chance(60)) {
            tavrosim::EthernetStatistics& statistics = part.statistics.emplace();
            statistics.counters.framesSent = dice_.Below(100000);
            statistics.counters.receiveErrors = dice_.Below(10);
        }
    }

    void MakeIscsi(tavrosim::IscsiPart& part) {
        part.tcpIp = MakeTcpIp();
        for (const tavrosim::NetworkTarget& target : host_.iscsiTargets) {
            if (!target.portals.empty() && dice_.Chance(50)) {
                Know(part.storage, target.portals.front());
            }
        }
        MeetTargets(part.storage);
        for (const tavrosim::KnownTarget& target : part.storage.targets) {
            for (std::uint32_t i = dice_.Chance(50) ? 0 : dice_.From(1, 3); i > 0; --i) {
                AddSession(part.storage, target);
            }
        }
        if (dice_.Chance(50)) {
            MakeIscsiBoot(part.boot.emplace());
        }
        part.storage.statistics.logins = dice_.Below(100);
    }

    void Know(tavrosim::IscsiStorage& storage, const tavrosim::IscsiPortal& portal) {
        if (std::ranges::find(storage.portals, portal, [](const tavrosim::KnownPortal& known) {
                return static_cast<const tavrosim::IscsiPortal&>(known);
            }) == storage.portals.end()) {
            storage.portals.push_back({portal, LoginWithSecrets()});
        }
    }

    // Targets at known portals are known. That others answer there as well is told nowhere.
    void MeetTargets(tavrosim::IscsiStorage& storage) {
        for (const tavrosim::NetworkTarget& target : host_.iscsiTargets) {
            const bool isFound =
                !target.portals.empty() &&
                std::ranges::any_of(storage.portals, [&](const tavrosim::KnownPortal& known) {
                    return known == target.portals.front();
                });
            if (isFound && !Unforeseen(20)) {
                storage.targets.push_back({target.name, target.portals.front(), "SendTargets"});
            } else if (!isFound && !target.portals.empty() && dice_.Chance(20)) {
                storage.targets.push_back({target.name, target.portals.front(), "Static"});
            }
        }
        if (Unforeseen(30)) {
            storage.targets.push_back({"iqn.1999-12.com.example:gone", {"192.0.2.9", "1"}, "Odd"});
        }
    }

    // Sessions go through the portal that their target tells, and keep the initiator's name that
    // they began with: another portal, or the want of a name, is told nowhere.
    void AddSession(tavrosim::IscsiStorage& storage, const tavrosim::KnownTarget& target) {
        tavrosim::IscsiSession session;
        session.id = storage.lastSessionId += dice_.From(1, Unforeseen(5) ? 400 : 3);
        session.target = target.name;
        session.portal = target.portal;
        session.initiatorName = Unforeseen(20) ? "" : host_.initiator.name;
        session.multipath = dice_.OneOf(YesNo);
        session.immediateData = dice_.OneOf(YesNo);
        if (Unforeseen(20)) {
            session.portal.address = "203.0.113.250";
        }
        storage.sessions.push_back(std::move(session));
    }

    void MakeIscsiBoot(tavrosim::IscsiBoot& boot) {
        boot.tcpIpByDhcp = dice_.OneOf(OnOff);
        boot.linkUpDelay = std::to_string(dice_.Below(200));
        boot.address = "192.0.2." + std::to_string(dice_.Below(100));
        boot.initiatorName = "iqn.2015-01.com.example:boot";
        boot.chapName = "boot-chap";
        boot.chapSecret = "never-told-secret";
        boot.firstTarget.used = dice_.OneOf(OnOff);
        boot.firstTarget.name = "iqn.2015-01.com.example:boot-target";
        boot.firstTarget.chapSecret = "never-told-secret";
        boot.bootFromTarget = dice_.OneOf(OnOff);
    }

    void MakeFcoe(tavrosim::FcoePart& part) {
        fcid_ += 0x100;
        part.fcid = tavrosim::HexOf(fcid_, 6);
        part.fipVlanId = std::to_string(dice_.From(1, 4094));
        if (dice_.Chance(50)) {
            part.hardware.emplace().deviceName = "host" + std::to_string(dice_.Below(9));
        }
        if (dice_.Chance(50)) {
            part.dcb.state = dice_.Chance(50) ? "Enable" : "Disable";
            part.dcb.flowControlPriorities = "3 4";
            part.dcb.bandwidths = "30,70";
        }
        for (std::uint32_t i = dice_.Below(3); i > 0; --i) {
            constexpr std::uint64_t First = 0x2001005E10000000;
            part.virtualPorts.push_back(
                {WwnText(First + ++virtualPorts_), part.nodeWwn, tavrosim::HexOf(fcid_ + i, 6)});
        }
        part.statistics.transmittedFrames = dice_.Below(1000);
        if (dice_.Chance(50)) {
            tavrosim::FcoeBoot& boot = part.boot.emplace();
            boot.state = dice_.OneOf(OnOff);
            boot.busyRetries = dice_.Below(255);
            boot.targets[dice_.Below(8)] = {"21:00:00:00:00:00:00:01", "0", "Enabled"};
        }
    }

    // ---- Networks ------------------------------------------------------------------------------

    // Each target answers at one portal: which others it has is told nowhere.
    void MakeNetwork() {
        for (std::uint32_t i = dice_.Below(5); i > 0; --i) {
            tavrosim::NetworkTarget& target = host_.iscsiTargets.emplace_back();
            target.name = "iqn.2015-01.com.example:storage" + std::to_string(i);
            target.alias = dice_.Chance(50) ? "" : "Store " + std::to_string(i);
            const auto portal = [this] {
                return tavrosim::IscsiPortal{"203.0.113." + std::to_string(dice_.From(1, 4)),
                                             dice_.Chance(70) ? "3260" : "3261"};
            };
            target.portals.push_back(portal());
            if (Unforeseen(30)) {
                target.portals.push_back(portal());
            }
            if (Unforeseen(30)) {
                target.chap.emplace().targetSecret = "never-told-secret";
            }
            for (std::uint32_t lun = dice_.Below(3); lun > 0; --lun) {
                target.luns.push_back({lun, "Example", "Disk " + std::to_string(lun), "1 TB", "512",
                                       "LUN" + std::to_string(dice_.Below(1000))});
            }
        }
    }

    void MakeFabric() {
        tavrosim::FcoeFabric& fabric = host_.fcoeFabric;
        std::vector<std::string> ports;
        for (const Adapter& adapter : host_.adapters) {
            for (const Port& port : adapter.ports) {
                for (const Function& function : port.functions) {
                    if (function.fcoe) {
                        ports.push_back(function.fcoe->portWwn);
                    }
                }
            }
        }
        fabric.dcb.state = dice_.Chance(70) ? "Enable" : "Disable";
        constexpr std::uint64_t FabricNumber = 0x1000005E40000000;
        fabric.name = WwnText(FabricNumber + dice_.Below(99));
        fabric.fcfMac = MacText(FabricNumber & 0xFFFFFFFFFFFF);
        for (std::uint32_t i = dice_.Below(5); i > 0; --i) {
            constexpr std::uint64_t First = 0x2100005E20000000;
            tavrosim::FabricTarget& target = fabric.targets.emplace_back();
            target.portWwn = WwnText(First + i);
            target.nodeWwn = WwnText(First + 0x1000 + i);
            target.fcid = tavrosim::HexOf(0x020000 + i, 6);
            target.symbolicName = dice_.Chance(50) ? "" : "Array " + std::to_string(i);
            // A target that is not for everybody is hidden from one port at least, so that it
            // shows.
            if (ports.size() > 1 && dice_.Chance(30)) {
                target.initiators.assign(
                    ports.begin(),
                    ports.begin() + dice_.From(1, static_cast<std::uint32_t>(ports.size() - 1)));
            }
            for (std::uint32_t lun = dice_.Below(3); lun > 0; --lun) {
                target.luns.push_back({.number = lun,
                                       .vendor = "Example",
                                       .product = "Array",
                                       .capacity = std::to_string(lun) + " TB",
                                       .deviceName = "/dev/sd" + std::to_string(lun),
                                       .volumes = {}});
            }
        }
        BindTargets();
    }

    void BindTargets() {
        for (Adapter& adapter : host_.adapters) {
            for (Port& port : adapter.ports) {
                for (Function& function : port.functions) {
                    if (function.fcoe && !host_.fcoeFabric.targets.empty() && dice_.Chance(40)) {
                        function.fcoe->bindings.push_back(
                            {dice_.Any(host_.fcoeFabric.targets).portWwn, dice_.Below(2),
                             dice_.Below(4), dice_.Below(3), "Port WWN"});
                    }
                }
            }
        }
    }

    // ---- Odd texts -----------------------------------------------------------------------------

    // Replaces some of the texts and counters, but for those that a host file wants in one shape.
    template <class Value>
    void Disturb(Value& value, std::string_view key) {
        static const std::set<std::string_view> Shaped{
            "mac",  "portWwn", "nodeWwn",     "fcid", "targetPortWwn",     "initiators",
            "mode", "type",    "personality", "name", "pendingPersonality"};
        if constexpr (tavrosim::HostStruct<Value>) {
            Value::Members([&](const auto&... member) {
                ((member.presence == tavrosim::Presence::Former
                      ? void()
                      : Disturb(value.*member.member, member.key)),
                 ...);
            });
        } else if constexpr (std::is_same_v<Value, std::string>) {
            if (dice_.Chance(4) && !Shaped.contains(key)) {
                value = dice_.OneOf(OddTexts);
            }
        } else if constexpr (std::is_same_v<Value, std::uint64_t>) {
            if (dice_.Chance(20)) {
                value = std::uint64_t{dice_.Below(~0U)} << 29U;  // files hold 63 bits
            }
        } else if constexpr (requires { value.begin(); }) {
            for (auto& element : value) {
                Disturb(element, key);
            }
        } else if constexpr (requires { value.has_value(); }) {
            if (value) {
                Disturb(*value, key);
            }
        }
    }

    Dice dice_;
    Oddness oddness_;
    Host host_;
    std::uint32_t addresses_ = 0;
    std::uint32_t interfaces_ = 0;
    std::uint32_t virtualPorts_ = 0;
    std::uint32_t fcid_ = 0x010000;
};

}  // namespace

tavrosim::Host RandomHost(std::uint32_t seed, Oddness oddness) {
    return HostMaker(seed, oddness).Make();
}

}  // namespace tavrohost_test
