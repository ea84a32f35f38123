// The host's iSCSI initiator and iSNS servers, and the ping of an iSCSI function.
#include <algorithm>
#include <charconv>

#include "simulator/host/lookup.h"
#include "simulator/model/families.h"
#include "simulator/model/model.h"
#include "simulator/text.h"
#include "tavroapi/iscsi_records.h"

namespace tavrosim {
namespace {

using tavroapi::InitiatorRecord;
using tavroapi::IscsiPingRequest;
using tavroapi::IscsiPingResult;
using tavroapi::OperationCode;

// Statuses of these operations. The ping's is the contract's own: replies are missing.
constexpr std::uint32_t RepliesMissing = 0x9017;
constexpr std::uint32_t InvalidInitiatorName = 37121;
constexpr std::uint32_t ServerAlreadyListed = 37122;
constexpr std::uint32_t ServerNotListed = 37123;

constexpr std::size_t LongestIscsiName = 223;

Outcome ReadInitiator(const Host& host, const std::string&, InitiatorRecord& initiator) {
    initiator.name = host.initiator.name;
    initiator.login = OptionsOf(host.initiator.login);
    return Done();
}

Outcome SetInitiator(Host& host, const std::string&, const InitiatorRecord& initiator) {
    if (initiator.name.find_first_not_of(' ') == std::string::npos ||
        initiator.name.size() > LongestIscsiName) {
        return Refused(InvalidInitiatorName, L"The initiator name is not usable.",
                       L"Give a name of 1 to 223 characters, such as iqn.2015-01.com.example:host.",
                       L"name \"" + WideFromUtf8(initiator.name) + L"\"");
    }
    host.initiator = {initiator.name, LoginOf(initiator.login)};
    return Done();
}

// How many of `count` packets come back from the address; nothing when nobody has it.
std::optional<std::uint32_t> RepliesFrom(const Host& host, const std::string& address,
                                         std::uint32_t count) {
    for (const ReachableAddress& reachable : host.reachable) {
        if (reachable.address == address) {
            const std::uint32_t loss = std::min(reachable.lossPercent, 100U);
            return count - static_cast<std::uint32_t>(std::uint64_t{count} * loss / 100U);
        }
    }
    return std::nullopt;
}

Outcome PingFromIscsiPort(const Host& host, const std::string& request,
                          const IscsiPingRequest& ping, IscsiPingResult& result) {
    if (!FindIscsiFunction(host, request)) {
        return UnknownIdentifier(request, L"iSCSI");
    }
    std::uint32_t count = 0;
    std::from_chars(ping.count.data(), ping.count.data() + ping.count.size(), count);
    const std::uint32_t replies = RepliesFrom(host, ping.address, count).value_or(0);
    result.libraryText = ping.count;
    result.received = std::to_string(replies);
    if (replies < count) {
        return Refused(RepliesMissing, L"Not every packet was answered.",
                       L"Check the address, the cabling and the port's TCP/IP settings.",
                       WideFromUtf8(ping.address) + L": " + std::to_wstring(replies) + L" of " +
                           std::to_wstring(count) + L" replies");
    }
    return Done();
}

Outcome ListIsnsServers(const Host& host, const std::string& request,
                        std::list<std::string>& servers) {
    if (!FindIscsiFunction(host, request)) {
        return UnknownIdentifier(request, L"iSCSI");
    }
    servers.assign(host.isnsServers.begin(), host.isnsServers.end());
    return Done();
}

Outcome AddIsnsServer(Host& host, const std::string& request, const std::string& address) {
    if (!FindIscsiFunction(host, request)) {
        return UnknownIdentifier(request, L"iSCSI");
    }
    if (std::ranges::find(host.isnsServers, address) != host.isnsServers.end()) {
        return Refused(ServerAlreadyListed,
                       L"The iSNS server " + WideFromUtf8(address) + L" is listed already.",
                       L"Run \"tavrocli -iscsi -isns -listall\" to see the servers.");
    }
    host.isnsServers.push_back(address);
    return Done();
}

Outcome RemoveIsnsServer(Host& host, const std::string& request, const std::string& address) {
    if (!FindIscsiFunction(host, request)) {
        return UnknownIdentifier(request, L"iSCSI");
    }
    if (std::erase(host.isnsServers, address) == 0) {
        return Refused(ServerNotListed, L"There is no iSNS server " + WideFromUtf8(address) + L".",
                       L"Run \"tavrocli -iscsi -isns -listall\" to see the servers.");
    }
    return Done();
}

constexpr OperationModel Rows[] = {
    Reads<OperationCode::ReadInitiator, ReadInitiator>(),
    Changes<OperationCode::SetInitiator, SetInitiator>(),
    Reads<OperationCode::PingFromIscsiPort, PingFromIscsiPort>(),
    Reads<OperationCode::ListIsnsServers, ListIsnsServers>(),
    Changes<OperationCode::AddIsnsServer, AddIsnsServer>(),
    Changes<OperationCode::RemoveIsnsServer, RemoveIsnsServer>(),
};

}  // namespace

std::span<const OperationModel> InitiatorOperations() {
    return Rows;
}

}  // namespace tavrosim
