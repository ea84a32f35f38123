// The host's iSCSI initiator and iSNS servers, and the ping of an iSCSI function.
#include <algorithm>
#include <charconv>

#include "library/text/text.h"
#include "simulator/host/lookup.h"
#include "simulator/model/families.h"
#include "simulator/model/ip_address.h"
#include "simulator/model/model.h"
#include "tavroapi/codes.h"
#include "tavroapi/iscsi_records.h"

namespace tavrosim {
namespace {

using tavroapi::InitiatorRecord;
using tavroapi::IscsiPingRequest;
using tavroapi::IscsiPingResult;
using tavroapi::OperationCode;

constexpr std::size_t LongestIscsiName = 223;

Outcome ReadInitiator(const Host& host, InitiatorRecord& initiator) {
    initiator.name = host.initiator.name;
    initiator.login = OptionsOf(host.initiator.login);
    return Done();
}

Outcome SetInitiator(Host& host, const InitiatorRecord& initiator) {
    if (initiator.name.find_first_not_of(' ') == std::string::npos ||
        initiator.name.size() > LongestIscsiName) {
        return Refused(Status::InvalidInitiatorName, L"The initiator name is not usable.",
                       L"Give a name of 1 to 223 characters, such as iqn.2015-01.com.example:a1.",
                       L"name \"" + WideFromUtf8(initiator.name) + L"\"");
    }
    host.initiator = {initiator.name, LoginOf(initiator.login)};
    return Done();
}

// How many of `count` packets come back from the address; nothing when nobody has it.
std::optional<std::uint32_t> RepliesFrom(const Host& host, const std::string& address,
                                         std::uint32_t count) {
    const AddressMatch isPinged(address);
    for (const ReachableAddress& reachable : host.reachable) {
        if (isPinged(reachable.address)) {
            const std::uint32_t loss = std::min(reachable.lossPercent, 100U);
            return count - static_cast<std::uint32_t>(std::uint64_t{count} * loss / 100U);
        }
    }
    return std::nullopt;
}

Outcome PingFromIscsiPort(const Viewed<IscsiPart>& at, const IscsiPingRequest& ping,
                          IscsiPingResult& result) {
    if (!IpAddressFrom(ping.address)) {
        return tavrolib::NotAnAddress(Status::InvalidPingAddress, ping.address);
    }
    std::uint32_t count = 0;
    std::from_chars(ping.count.data(), ping.count.data() + ping.count.size(), count);
    const std::uint32_t replies = RepliesFrom(at.host, ping.address, count).value_or(0);
    result.libraryText = ping.count;
    result.received = std::to_string(replies);
    if (replies < count) {
        return Refused(tavroapi::IscsiPingRepliesMissing, L"Some packets got no reply.",
                       L"Check the address, the cabling and the port's TCP/IP settings.",
                       WideFromUtf8(ping.address) + L": " + std::to_wstring(replies) + L" of " +
                           std::to_wstring(count) + L" replies");
    }
    return Done();
}

Outcome ListIsnsServers(const Viewed<IscsiPart>& at, std::list<std::string>& servers) {
    servers.assign(at.host.isnsServers.begin(), at.host.isnsServers.end());
    return Done();
}

Outcome AddIsnsServer(const Edited<IscsiPart>& at, const std::string& address) {
    if (std::ranges::find(at.host.isnsServers, address) != at.host.isnsServers.end()) {
        return Refused(Status::ServerAlreadyListed, L"The iSNS server is listed already.",
                       L"Run \"tavrocli -iscsi -isns -listall\" to see the servers.",
                       WideFromUtf8(address));
    }
    at.host.isnsServers.push_back(address);
    return Done();
}

Outcome RemoveIsnsServer(const Edited<IscsiPart>& at, const std::string& address) {
    if (std::erase(at.host.isnsServers, address) == 0) {
        return Refused(Status::ServerNotListed, L"The iSNS server is not listed.",
                       L"Run \"tavrocli -iscsi -isns -listall\" to see the servers.",
                       WideFromUtf8(address));
    }
    return Done();
}

}  // namespace

std::span<const OperationModel> InitiatorOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::ReadInitiator, Host, ReadInitiator>(),
        Changes<OperationCode::SetInitiator, Host, SetInitiator>(),
        Reads<OperationCode::PingFromIscsiPort, IscsiPart, PingFromIscsiPort>(),
        Reads<OperationCode::ListIsnsServers, IscsiPart, ListIsnsServers>(),
        Changes<OperationCode::AddIsnsServer, IscsiPart, AddIsnsServer>(),
        Changes<OperationCode::RemoveIsnsServer, IscsiPart, RemoveIsnsServer>(),
    };
    return Rows;
}

}  // namespace tavrosim
