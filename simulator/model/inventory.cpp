#include "simulator/model/inventory.h"

#include <algorithm>
#include <vector>

#include "simulator/host/lookup.h"
#include "simulator/model/families.h"
#include "simulator/model/model.h"
#include "simulator/text.h"

namespace tavrosim {
namespace {

using tavroapi::FunctionIdentity;
using tavroapi::OperationCode;

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

Outcome UnknownName(const wchar_t* what, const std::string& name) {
    return Refused(Status::UnknownIdentifier,
                   std::wstring(L"There is no ") + what + L" \"" + WideFromUtf8(name) + L"\".",
                   L"Run \"tavrocli -showadapter\" to see this host's adapters and ports.");
}

Outcome ReadAdapterState(const Host& host, const std::string& request, std::wstring& state) {
    const auto found = FindFunction(host, request);
    if (!found) {
        return UnknownIdentifier(request);
    }
    state = WideFromUtf8(found.adapter->state);
    return Done();
}

constexpr OperationModel Rows[] = {Reads<OperationCode::ReadAdapterState, ReadAdapterState>()};

}  // namespace

std::span<const OperationModel> AdapterOperations() {
    return Rows;
}

Outcome GetHostName(const Host& host, std::string& hostName) {
    hostName = host.name;
    return Done();
}

Outcome GetDiscoveredAdapters(const Host& host, std::list<tavroapi::AdapterRecord>& adapters) {
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

Outcome GetPortFunctions(const Host& host, const std::string& adapterName,
                         const std::string& portName, PortFunctions& functions) {
    const Adapter* adapter = FindNamed(host.adapters, adapterName);
    if (adapter == nullptr) {
        return UnknownName(L"adapter", adapterName);
    }
    const Port* port = FindNamed(adapter->ports, portName);
    if (port == nullptr) {
        return UnknownName(L"port", portName);
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

Outcome GetPartitionState(const Host& host, const std::string& identifier, std::uint32_t& state) {
    const auto found = FindFunction(host, identifier);
    if (!found) {
        return UnknownIdentifier(identifier);
    }
    state = found.adapter->partitionState;
    return Done();
}

Outcome GetAdapterType(const Host& host, const std::string& identifier, std::string& typeText) {
    const auto found = FindFunction(host, identifier);
    if (!found) {
        return UnknownIdentifier(identifier);
    }
    typeText = found.adapter->type;
    return Done();
}

Outcome GetAdapterPortNumber(const Host& host, const std::string& identifier,
                             std::uint32_t& portCount) {
    const auto found = FindFunction(host, identifier);
    if (!found) {
        return UnknownIdentifier(identifier);
    }
    portCount = static_cast<std::uint32_t>(found.adapter->ports.size());
    return Done();
}

}  // namespace tavrosim
