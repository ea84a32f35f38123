#include "simulator/model/inventory.h"

#include <algorithm>
#include <list>
#include <string>
#include <vector>

#include "simulator/host/lookup.h"
#include "simulator/model/families.h"
#include "simulator/model/model.h"

namespace tavrosim {
namespace {

using tavroapi::FunctionIdentity;
using tavroapi::OperationCode;
using tavrolib::Call;
using tavrolib::EntryPoint;
using tavrolib::FilledBy;
using tavrolib::PortFunctions;

FunctionIdentity IdentityOf(const Host& host, const Function& function) {
    if (function.fcoe) {
        return {KeyOf(function), tavroapi::FcoeFunction, function.fcoe->nodeWwn};
    }
    if (function.iscsi) {
        return {KeyOf(function), tavroapi::IscsiFunction, host.initiator.name};
    }
    return {KeyOf(function), tavroapi::EthernetFunction,
            function.ethernet ? function.ethernet->interfaceName : std::string()};
}

template <class Elements>
auto FindNamed(const Elements& elements, const std::string& name) {
    const auto found = std::find_if(elements.begin(), elements.end(),
                                    [&name](const auto& element) { return element.name == name; });
    return found == elements.end() ? nullptr : &*found;
}

Outcome ListAdapters(const Host& host, std::list<tavroapi::AdapterRecord>& adapters) {
    adapters.clear();
    for (const Adapter& adapter : host.adapters) {
        tavroapi::AdapterRecord& record = adapters.emplace_back();
        record.name = adapter.name;
        record.number = adapter.number;
        for (const Port& port : adapter.ports) {
            record.portNames.push_back(port.name);
        }
    }
    return Done();
}

// The functions of the port in the order of their numbers.
Outcome ListFunctions(const Host& host, const std::string& adapterName, const std::string& portName,
                      PortFunctions& functions) {
    const Adapter* adapter = FindNamed(host.adapters, adapterName);
    if (adapter == nullptr) {
        return tavrolib::UnknownAdapter(adapterName);
    }
    const Port* port = FindNamed(adapter->ports, portName);
    if (port == nullptr) {
        return tavrolib::UnknownPort(adapterName, portName);
    }
    std::vector<const Function*> ordered;
    for (const Function& function : port->functions) {
        ordered.push_back(&function);
    }
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const Function* a, const Function* b) { return a->number < b->number; });
    functions.addresses.clear();
    functions.identities.clear();
    for (const Function* function : ordered) {
        functions.addresses.push_back({KeyOf(*function), function->mac, function->number});
        functions.identities.push_back(IdentityOf(host, *function));
    }
    return Done();
}

// The queries that name a function.
Outcome AnswerAboutFunction(const Host& host, const Call& call) {
    const std::string identifier = call.request.value_or("");
    const auto found = FindFunction(host, identifier);
    if (!found) {
        return tavrolib::UnknownIdentifier(identifier);
    }
    const Adapter& adapter = *found.adapter;
    if (call.entryPoint == EntryPoint::GetPartitionState) {
        FilledBy<EntryPoint::GetPartitionState>(call) = adapter.partitionState;
    } else if (call.entryPoint == EntryPoint::GetAdapterType) {
        FilledBy<EntryPoint::GetAdapterType>(call) = adapter.type;
    } else {
        FilledBy<EntryPoint::GetAdapterPortNumber>(call) =
            static_cast<std::uint32_t>(adapter.ports.size());
    }
    return Done();
}

Outcome ReadAdapterState(const Viewed<Function>& at, std::wstring& state) {
    state = WideFromUtf8(at.adapter.state);
    return Done();
}

}  // namespace

std::span<const OperationModel> AdapterOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::ReadAdapterState, Function, ReadAdapterState>()};
    return Rows;
}

Outcome AnswerQuery(const Host& host, const Call& call) {
    switch (call.entryPoint) {
        case EntryPoint::GetHostName:
            FilledBy<EntryPoint::GetHostName>(call) = host.name;
            return Done();
        case EntryPoint::GetDiscoveredAdapters:
            return ListAdapters(host, FilledBy<EntryPoint::GetDiscoveredAdapters>(call));
        case EntryPoint::GetPortWWNs:
            return ListFunctions(host, call.adapter.value_or(""), call.port.value_or(""),
                                 FilledBy<EntryPoint::GetPortWWNs>(call));
        default:
            return AnswerAboutFunction(host, call);
    }
}

}  // namespace tavrosim
