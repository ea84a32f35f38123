#include "linux/serve/inventory.h"

#include <algorithm>
#include <list>
#include <string>

#include "linux/iscsi/initiator_name.h"
#include "linux/system/host_name.h"
#include "tavroapi/codes.h"

namespace tavrolinux {
namespace {

using tavroapi::OperationCode;
using tavrolib::Call;
using tavrolib::EntryPoint;
using tavrolib::FilledBy;
using tavrolib::PortFunctions;

constexpr const char* AdapterType = "Ethernet";
constexpr const wchar_t* AdapterState = L"1";

Outcome ListAdapters(const Machine& machine, std::list<tavroapi::AdapterRecord>& adapters) {
    adapters.clear();
    for (const Adapter& adapter : machine.Adapters()) {
        tavroapi::AdapterRecord& record = adapters.emplace_back();
        record.name = adapter.name;
        record.number = static_cast<std::uint32_t>(adapters.size() - 1);
        for (const Interface& port : adapter.ports) {
            record.portNames.push_back(PortName(port.place));
        }
    }
    return Done();
}

// The numbers of functions are even for Ethernet and odd for iSCSI; those of FCoE stand behind all.
Outcome ListFunctions(const Site& site, const std::string& adapterName, const std::string& portName,
                      PortFunctions& functions) {
    const Adapter* const adapter = site.machine.FindAdapter(adapterName);
    if (adapter == nullptr) {
        return tavrolib::UnknownAdapter(adapterName);
    }
    const auto port = std::ranges::find_if(adapter->ports, [&](const Interface& interface) {
        return PortName(interface.place) == portName;
    });
    if (port == adapter->ports.end()) {
        return tavrolib::UnknownPort(adapterName, portName);
    }
    functions = {};
    const auto add = [&](const std::string& key, std::uint32_t number, std::uint32_t type,
                         const std::string& second) {
        functions.addresses.push_back({key, port->key, number});
        functions.identities.push_back({key, type, second});
    };
    add(port->key, 2 * port->place, tavroapi::EthernetFunction, port->name);
    add(port->key, 2 * port->place + 1, tavroapi::IscsiFunction,
        InitiatorNameIfReadable(site.machine.SystemRoots()));
    if (!port->portWwn.empty()) {
        const auto portCount = static_cast<std::uint32_t>(adapter->ports.size());
        add(port->portWwn, 2 * portCount + port->place, tavroapi::FcoeFunction, port->nodeWwn);
    }
    return Done();
}

// What is the same whichever of its adapter's functions is named, needs no single one to be meant.
Outcome AnswerAboutAdapter(const Site& site, const Call& call) {
    const std::string identifier = call.request.value_or("");
    const auto found = site.machine.Find(identifier, FunctionKind::Any);
    if (found.empty()) {
        return tavrolib::UnknownIdentifier(identifier);
    }
    if (call.entryPoint == EntryPoint::GetPartitionState) {
        FilledBy<EntryPoint::GetPartitionState>(call) = tavroapi::PartitionedForGood;
    } else if (call.entryPoint == EntryPoint::GetAdapterType) {
        FilledBy<EntryPoint::GetAdapterType>(call) = AdapterType;
    } else {
        FilledBy<EntryPoint::GetAdapterPortNumber>(call) =
            static_cast<std::uint32_t>(found.front().adapter->ports.size());
    }
    return Done();
}

Outcome ReadAdapterState(const Place& /*at*/, std::wstring& state) {
    state = AdapterState;
    return Done();
}

}  // namespace

Outcome AnswerQuery(const Site& site, const Call& call) {
    switch (call.entryPoint) {
        case EntryPoint::GetHostName:
            FilledBy<EntryPoint::GetHostName>(call) = ReadHostName();
            return Done();
        case EntryPoint::GetDiscoveredAdapters:
            return ListAdapters(site.machine, FilledBy<EntryPoint::GetDiscoveredAdapters>(call));
        case EntryPoint::GetPortWWNs:
            return ListFunctions(site, call.adapter.value_or(""), call.port.value_or(""),
                                 FilledBy<EntryPoint::GetPortWWNs>(call));
        default:
            return AnswerAboutAdapter(site, call);
    }
}

// What no family has: the adapters themselves, and what this host refuses altogether.
std::span<const Operation> OtherOperations() {
    constexpr const wchar_t* Boot = L"the boot settings of an adapter's firmware";
    constexpr const wchar_t* Dcb = L"data center bridging";
    constexpr const wchar_t* Fip = L"the settings of the FCoE initialization protocol";
    constexpr const wchar_t* VirtualPorts = L"virtual ports of Fibre Channel";
    constexpr const wchar_t* Isns = L"a client of iSNS servers";
    constexpr const wchar_t* Partitions = L"an adapter with partitions";
    constexpr const wchar_t* Personalities = L"an adapter with personalities";
    static constexpr Operation Rows[] = {
        OnFunction<OperationCode::ReadAdapterState, FunctionKind::Any, ReadAdapterState>(),
        NotOffered<OperationCode::ReadIscsiBoot>(Boot),
        NotOffered<OperationCode::WriteIscsiBoot>(Boot),
        NotOffered<OperationCode::ReadFcoeBoot>(Boot),
        NotOffered<OperationCode::WriteFcoeBoot>(Boot),
        NotOffered<OperationCode::ReadDcbInfo>(Dcb),
        NotOffered<OperationCode::ReadDcbConfig>(Dcb),
        NotOffered<OperationCode::WriteDcbConfig>(Dcb),
        NotOffered<OperationCode::ReadFip>(Fip),
        NotOffered<OperationCode::WriteFip>(Fip),
        NotOffered<OperationCode::ListVirtualPorts>(VirtualPorts),
        NotOffered<OperationCode::CreateVirtualPorts>(VirtualPorts),
        NotOffered<OperationCode::DeleteVirtualPorts>(VirtualPorts),
        NotOffered<OperationCode::ListVirtualPortTargets>(VirtualPorts),
        NotOffered<OperationCode::ListVirtualPortLuns>(VirtualPorts),
        NotOffered<OperationCode::ListIsnsServers>(Isns),
        NotOffered<OperationCode::AddIsnsServer>(Isns),
        NotOffered<OperationCode::RemoveIsnsServer>(Isns),
        NotOffered<OperationCode::ReadPartitions>(Partitions),
        NotOffered<OperationCode::WritePartitions>(Partitions),
        NotOffered<OperationCode::ReadPersonality>(Personalities),
        NotOffered<OperationCode::WritePersonality>(Personalities),
    };
    return Rows;
}

}  // namespace tavrolinux
