#include "twin/rehearse/certainty.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>

#include "library/calls/call.h"
#include "library/calls/operations.h"
#include "simulator/answers/answer.h"
#include "simulator/answers/captured_answers.h"
#include "simulator/host/lookup.h"
#include "simulator/model/ip_address.h"
#include "simulator/model/model.h"
#include "simulator/model/numbers.h"
#include "tavroapi/operation_code.h"
#include "tavroapi/tcpip_records.h"

namespace tavrohost {
namespace {

using tavroapi::OperationCode;
using tavrosim::EthernetPart;
using tavrosim::Host;
using tavrosim::IscsiPart;

// One operation on the twin, and the twin before and after the command.
struct Rehearsed {
    const RehearsedOperation& operation;
    const Host& before;
    const Host& after;
};

// The reason for a doubt; empty when there is none.
using Reason = std::string_view;

template <class Part>
const Part* PartNamed(const Host& host, const std::string& request) {
    const auto found = tavrosim::FindFunctionWith<Part>(host, request);
    return found ? &tavrosim::PartOf<Part>(*found.function) : nullptr;
}

template <Reason const& Text>
Reason Always(const Rehearsed&) {
    return Text;
}

Reason Never(const Rehearsed&) {
    return {};
}

// What the host told when it was captured to an operation that takes nothing; null where it was
// not captured or not asked.
const tavrosim::Answer* CapturedReading(const Rehearsed& at, OperationCode code) {
    if (at.before.captured == nullptr) {
        return nullptr;
    }
    tavrolib::Call reading;
    reading.entryPoint = tavrolib::EntryPoint::DoOperation;
    reading.operation = static_cast<std::uint32_t>(code);
    reading.described = tavrolib::FindOperation(*reading.operation);
    reading.request = at.operation.request;
    return at.before.captured->Find(reading);
}

using tavrosim::TcpIp;

// How the addresses of one IP version are come by, before and after.
struct AddressFamily {
    bool leases = false;
    bool isChanged = false;
};

// The VLAN in which a function is, or will be after the restart.
const std::string& VlanOf(const TcpIp& settings) {
    return settings.pendingVlanId ? *settings.pendingVlanId : settings.vlanId;
}

std::array<AddressFamily, 2> FamiliesOf(const TcpIp& before, const TcpIp& after) {
    return {{{after.dhcp == "Yes", before.dhcp != after.dhcp || before.address != after.address ||
                                       before.subnetMask != after.subnetMask ||
                                       before.gateway != after.gateway},
             {after.dhcpIPv6 == "Yes", before.dhcpIPv6 != after.dhcpIPv6 ||
                                           before.addressIPv6 != after.addressIPv6 ||
                                           before.prefixLengthIPv6 != after.prefixLengthIPv6 ||
                                           before.gatewayIPv6 != after.gatewayIPv6}}};
}

// Where a function leases addresses, the command is certain only when what it changed is the
// addresses of the IP version that does not. In another VLAN, another server answers.
template <class Part>
Reason DoubtAboutLease(const Rehearsed& at) {
    const Part* const before = PartNamed<Part>(at.before, at.operation.request);
    const Part* const after = PartNamed<Part>(at.after, at.operation.request);
    if (before == nullptr || after == nullptr) {
        return {};
    }
    const auto families = FamiliesOf(before->tcpIp, after->tcpIp);
    const auto any = [&](bool leases, bool isChanged) {
        return std::ranges::any_of(families, [&](const AddressFamily& family) {
            return family.leases == leases && (family.isChanged || !isChanged);
        });
    };
    const bool isFixed =
        any(false, true) && !any(true, true) && VlanOf(before->tcpIp) == VlanOf(after->tcpIp);
    return any(true, false) && !isFixed ? "what the DHCP server hands out is not known before"
                                        : Reason();
}

// Of a function that is an interface of its operating system, which does not say more of it: the
// system has the VLANs, the kernel wants a gateway that the address reaches, and a network manager
// that owns the interface keeps others away from it.
bool IsOfSystem(const EthernetPart& part) {
    return part.tcpIp.vlanPriority.empty();
}

bool IsReached(const std::string& gatewayText, const std::string& addressText, std::size_t bits) {
    const auto gateway = tavrosim::IpAddressFrom(gatewayText);
    const auto address = tavrosim::IpAddressFrom(addressText);
    if (!gateway || gateway->octets == decltype(gateway->octets){}) {
        return true;
    }
    if (!address || address->isIPv6 != gateway->isIPv6) {
        return false;
    }
    for (std::size_t bit = 0; bit < bits; ++bit) {
        const auto mask = static_cast<std::uint8_t>(0x80U >> (bit % 8));
        if (((gateway->octets.at(bit / 8) ^ address->octets.at(bit / 8)) & mask) != 0) {
            return false;
        }
    }
    return true;
}

std::size_t BitsOfMask(const std::string& maskText) {
    std::size_t bits = 0;
    if (const auto mask = tavrosim::IpAddressFrom(maskText)) {
        for (const std::uint8_t octet : mask->octets) {
            bits += static_cast<std::size_t>(std::popcount(octet));
        }
    }
    return bits;
}

std::size_t BitsOfPrefix(const std::string& prefix) {
    constexpr std::uint8_t Longest = 128;
    return std::min(tavrosim::WholeNumber<std::uint8_t>(prefix).value_or(Longest), Longest);
}

bool HasOwner(const Rehearsed& at) {
    const tavrosim::Answer* const answer = CapturedReading(at, OperationCode::ReadEthernetTcpIp);
    tavroapi::TcpIpSettings record;
    if (answer != nullptr) {
        answer->FillOutput(
            tavrolib::FindOperation(static_cast<std::uint32_t>(OperationCode::ReadEthernetTcpIp))
                ->output,
            &record);
    }
    return !record.libraryText13.empty();
}

Reason DoubtAboutAddress(const Rehearsed& at) {
    const auto* const before = PartNamed<EthernetPart>(at.before, at.operation.request);
    const auto* const after = PartNamed<EthernetPart>(at.after, at.operation.request);
    if (before == nullptr || after == nullptr || !IsOfSystem(*before)) {
        return DoubtAboutLease<EthernetPart>(at);
    }
    const TcpIp& wanted = after->tcpIp;
    if (HasOwner(at)) {
        return "a network manager owns the interface";
    }
    if (VlanOf(before->tcpIp) != VlanOf(wanted)) {
        return "the host tells of no VLANs of this function";
    }
    if (!IsReached(wanted.gateway, wanted.address, BitsOfMask(wanted.subnetMask)) ||
        !IsReached(wanted.gatewayIPv6, wanted.addressIPv6, BitsOfPrefix(wanted.prefixLengthIPv6))) {
        return "whether the host reaches this gateway is not known";
    }
    return DoubtAboutLease<EthernetPart>(at);
}

// A driver may have one switch for several settings, or let one go with another. Nothing hangs on
// the size of frames.
Reason DoubtAboutSettings(const Rehearsed& at) {
    const auto* const before = PartNamed<EthernetPart>(at.before, at.operation.request);
    const auto* const after = PartNamed<EthernetPart>(at.after, at.operation.request);
    if (before == nullptr || after == nullptr || !IsOfSystem(*before) || !before->settings ||
        !after->settings) {
        return {};
    }
    bool isMore = false;
    tavrosim::EthernetSettings::Members([&](const auto&... member) {
        isMore = ((member.member != &tavrosim::EthernetSettings::jumboPacket &&
                   (*before->settings).*member.member != (*after->settings).*member.member) ||
                  ...);
    });
    return isMore ? "which other settings the driver changes with this one is not known" : Reason();
}

constexpr Reason SecretUnseen = "whether the host takes over a secret cannot be read back";

bool HasSecret(const tavrosim::Login& login) {
    return !login.targetSecret.empty() || !login.initiatorSecret.empty();
}

bool KnowsPortalWithSecret(const IscsiPart& part) {
    return std::ranges::any_of(part.storage.portals, [](const tavrosim::KnownPortal& portal) {
        return HasSecret(portal.login);
    });
}

// A portal that was known before has shown its targets already.
Reason DoubtAboutDiscovery(const Rehearsed& at) {
    const auto* const before = PartNamed<IscsiPart>(at.before, at.operation.request);
    const auto* const after = PartNamed<IscsiPart>(at.after, at.operation.request);
    if (before == nullptr || after == nullptr) {
        return {};
    }
    if (before->storage.portals.size() != after->storage.portals.size()) {
        return "which targets a new portal offers is not known before it is asked";
    }
    return KnowsPortalWithSecret(*after) ? SecretUnseen : Reason();
}

Reason DoubtAboutInitiator(const Rehearsed& at) {
    return HasSecret(at.after.initiator.login) ? SecretUnseen : Reason();
}

// A target that is forgotten with its portal or its session may be reached through another portal.
Reason DoubtAboutReach(const Rehearsed& at) {
    const auto* const before = PartNamed<IscsiPart>(at.before, at.operation.request);
    const auto* const after = PartNamed<IscsiPart>(at.after, at.operation.request);
    if (before == nullptr || after == nullptr || after->storage.portals.empty() ||
        after->storage.targets.size() == before->storage.targets.size()) {
        return {};
    }
    return "whether another portal reaches the targets is not known";
}

std::string SecretsOf(const tavrosim::IscsiBoot& boot) {
    return boot.chapSecret + boot.firstTarget.chapSecret + boot.secondTarget.chapSecret;
}

Reason DoubtAboutBootSecrets(const Rehearsed& at) {
    const auto* const part = PartNamed<IscsiPart>(at.after, at.operation.request);
    return part != nullptr && part->boot && !SecretsOf(*part->boot).empty() ? SecretUnseen
                                                                            : Reason();
}

constexpr Reason Login = "whether the target accepts the login is not known before it is asked";
constexpr Reason Replies = "whether replies come is not known before";
constexpr Reason Fabric =
    "which FCID and targets the fabric gives a new virtual port is not known before";
constexpr Reason Export = "the export is the library's own and was not tried";

constexpr Reason Counters = "the counters of the host go on meanwhile";
constexpr Reason Untried = "nobody has compared a twin and a host in this";

// What an operation changes, and the operation that reads the same.
struct Counterpart {
    OperationCode changes;
    OperationCode reads;
};
constexpr Counterpart Counterparts[] = {
    {OperationCode::AddIsnsServer, OperationCode::ListIsnsServers},
    {OperationCode::RemoveIsnsServer, OperationCode::ListIsnsServers},
    {OperationCode::CreateVirtualPorts, OperationCode::ListVirtualPorts},
    {OperationCode::DeleteVirtualPorts, OperationCode::ListVirtualPorts},
    {OperationCode::WriteFip, OperationCode::ReadFip},
    {OperationCode::WriteDcbConfig, OperationCode::ReadDcbConfig},
    {OperationCode::WriteIscsiBoot, OperationCode::ReadIscsiBoot},
    {OperationCode::WriteFcoeBoot, OperationCode::ReadFcoeBoot},
    {OperationCode::WriteAdapterSettings, OperationCode::ReadAdapterSettings},
    {OperationCode::WritePartitions, OperationCode::ReadPartitions},
    {OperationCode::WritePersonality, OperationCode::ReadPersonality},
};

// A host that refused to tell something will hardly let it be changed.
Reason DoubtAboutUntold(const Rehearsed& at) {
    for (const auto& [changes, reads] : Counterparts) {
        if (static_cast<std::uint32_t>(changes) == at.operation.code) {
            const tavrosim::Answer* const answer = CapturedReading(at, reads);
            if (answer != nullptr && answer->status != 0) {
                return "the host refused to tell what this changes when it was captured";
            }
        }
    }
    return {};
}

struct DoubtRow {
    OperationCode code;
    Reason (*reason)(const Rehearsed&);
};

// What of the operations that change something or reach out is known. Those that are not listed are
// not known to do on a host what they do on a twin.
constexpr DoubtRow DoubtRows[] = {
    {OperationCode::SetIscsiTcpIp, DoubtAboutLease<IscsiPart>},
    {OperationCode::SetEthernetTcpIp, DoubtAboutAddress},
    {OperationCode::AddPortal, DoubtAboutDiscovery},
    {OperationCode::RemovePortal, DoubtAboutReach},
    {OperationCode::RemoveTarget, Never},
    {OperationCode::LogInToTarget, Always<Login>},
    {OperationCode::LogOutOfTarget, DoubtAboutReach},
    {OperationCode::AddIsnsServer, Never},
    {OperationCode::RemoveIsnsServer, Never},
    {OperationCode::SetInitiator, DoubtAboutInitiator},
    {OperationCode::PingFromIscsiPort, Always<Replies>},
    {OperationCode::PingFromFcoePort, Always<Replies>},
    {OperationCode::CreateVirtualPorts, Always<Fabric>},
    {OperationCode::DeleteVirtualPorts, Never},
    {OperationCode::WriteFip, Never},
    {OperationCode::WriteDcbConfig, Never},
    {OperationCode::WriteIscsiBoot, DoubtAboutBootSecrets},
    {OperationCode::WriteFcoeBoot, Never},
    {OperationCode::WriteAdapterSettings, DoubtAboutSettings},
    {OperationCode::ExportAdapterSettings, Always<Export>},
    {OperationCode::WritePartitions, Never},
    {OperationCode::WritePersonality, Never},
    {OperationCode::ResetFcoeStatistics, Always<Counters>},
    {OperationCode::ResetEthernetStatistics, Always<Counters>},
};

// Operations of which a refusal by the twin is as good as the host's own, since it follows from
// what was captured.
constexpr OperationCode RefusedAlike[] = {OperationCode::WriteAdapterSettings};

Reason DoubtAboutRefusal(const Rehearsed& at) {
    const std::uint32_t code = at.operation.code;
    const auto isCode = [code](OperationCode each) {
        return static_cast<std::uint32_t>(each) == code;
    };
    if (std::ranges::any_of(RefusedAlike, isCode)) {
        return {};
    }
    if (!IsReading(code)) {
        return "the twin refuses it by rules that the host may not have";
    }
    const tavrolib::Operation* const described = tavrolib::FindOperation(code);
    const bool asksForOne = described != nullptr && described->input != nullptr &&
                            tavrosim::FindModel(code)->tellCounters == nullptr;
    return asksForOne ? "the host may not have been asked this when it was captured" : Reason();
}

Reason ReasonOf(const Rehearsed& at) {
    const auto* const row = std::ranges::find_if(DoubtRows, [&](const DoubtRow& candidate) {
        return static_cast<std::uint32_t>(candidate.code) == at.operation.code;
    });
    Reason reason;
    if (row != std::end(DoubtRows)) {
        reason = row->reason(at);
    } else if (!IsReading(at.operation.code)) {
        reason = Untried;
    }
    if (reason.empty()) {
        reason = DoubtAboutUntold(at);
    }
    return reason.empty() && !at.operation.IsDone() ? DoubtAboutRefusal(at) : reason;
}

}  // namespace

bool IsReading(std::uint32_t code) {
    const tavrosim::OperationModel* const model = tavrosim::FindModel(code);
    return model != nullptr && (model->change == nullptr || model->tellCounters != nullptr);
}

std::vector<Doubt> DoubtsAbout(const std::vector<RehearsedOperation>& operations,
                               const Host& before, const Host& after) {
    std::vector<Doubt> doubts;
    for (const RehearsedOperation& operation : operations) {
        Doubt doubt{operation.code, operation.request,
                    std::string(ReasonOf({operation, before, after}))};
        if (!doubt.reason.empty() && std::ranges::find(doubts, doubt) == doubts.end()) {
            doubts.push_back(std::move(doubt));
        }
    }
    return doubts;
}

}  // namespace tavrohost
