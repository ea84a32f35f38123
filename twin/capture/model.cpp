#include "twin/capture/model.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "library/text/text.h"
#include "simulator/host/former_hardware.h"
#include "simulator/host/lookup.h"
#include "simulator/host/told_hardware.h"
#include "tavroapi/codes.h"
#include "twin/capture/function_model.h"
#include "twin/capture/one_line.h"
#include "twin/capture/walk.h"

namespace tavrohost {
namespace {

using tavroapi::FunctionAddress;
using tavroapi::FunctionIdentity;
using tavroapi::OperationCode;
using tavrolib::EntryPoint;
using tavrosim::NormalIdentifier;

// A text that a library sent, in quotation marks.
std::string QuotedText(const std::string& bytes) {
    return '"' + InOneLine(bytes) + '"';
}

// Makes the model, step by step.
class ModelMaker {
  public:
    explicit ModelMaker(const Told& told) : told_(told) {}

    CapturedModel Make() {
        tavrosim::Host& host = model_.host;
        host.name = told_.By<EntryPoint::GetHostName>({}).value_or(std::string());
        if (const auto initiator = told_.By<OperationCode::ReadInitiator>({})) {
            host.initiator = {initiator->name, tavrosim::LoginOf(initiator->login)};
        }
        for (const tavroapi::AdapterRecord& record :
             told_.By<EntryPoint::GetDiscoveredAdapters>({}).value_or(
                 std::list<tavroapi::AdapterRecord>{})) {
            AddAdapter(record);
        }
        AddIsnsServers();
        host.iscsiTargets = NetworkTargetsFrom(told_, host);
        host.fcoeFabric = FabricFrom(told_, host);
        return std::move(model_);
    }

  private:
    void AddAdapter(const tavroapi::AdapterRecord& record) {
        const auto& adapters = model_.host.adapters;
        if (std::ranges::find(adapters, record.name, &tavrosim::Adapter::name) != adapters.end()) {
            Omit("another adapter is called " + QuotedText(record.name));
            return;
        }
        tavrosim::Adapter adapter;
        adapter.name = record.name;
        adapter.number = record.number;
        for (const std::string& name : record.portNames) {
            if (std::ranges::find(adapter.ports, name, &tavrosim::Port::name) ==
                adapter.ports.end()) {
                adapter.ports.push_back(PortFrom(adapter.name, name));
            }
        }
        TellCommon(adapter);
        TellPartitions(told_, adapter);
        ShareDrivers(adapter);
        tavrosim::ShareHardware(adapter);
        model_.host.adapters.push_back(std::move(adapter));
    }

    tavrosim::Port PortFrom(const std::string& adapterName, const std::string& name) {
        tavrosim::Port port;
        port.name = name;
        const auto functions = told_.By<EntryPoint::GetPortWWNs>(PortQuery(adapterName, name))
                                   .value_or(tavrolib::PortFunctions{});
        auto identity = functions.identities.begin();
        for (const FunctionAddress& address : functions.addresses) {
            if (identity == functions.identities.end()) {
                Omit("the type of the function " + QuotedText(address.keyText) + " is not told");
                continue;
            }
            AddFunction(address, *identity++, port);
        }
        SettleIscsiSpeeds(told_, port);
        return port;
    }

    void AddFunction(const FunctionAddress& address, const FunctionIdentity& identity,
                     tavrosim::Port& port) {
        const bool isFcoe = identity.functionType == tavroapi::FcoeFunction;
        const std::string& key = address.keyText;
        tavrosim::Function function;
        function.number = address.functionNumber;
        function.mac = isFcoe ? MacOfFcoe(address) : MacOf(address);
        if (!(isFcoe ? IsWwn(key) : IsMac(key)) || !IsMac(function.mac)) {
            Omit("the function " + QuotedText(key) + " is addressed neither by a MAC nor by a WWN");
            return;
        }
        auto& identifiers = identifiers_[isFcoe ? tavroapi::FcoeFunction
                                         : identity.functionType == tavroapi::EthernetFunction
                                             ? tavroapi::EthernetFunction
                                             : tavroapi::IscsiFunction];
        const bool isNew = !identifiers.contains(NormalIdentifier(function.mac)) &&
                           !identifiers.contains(NormalIdentifier(key));
        if (!isNew) {
            Omit("another function of the same kind has the identifier " + QuotedText(key));
            return;
        }
        identifiers.insert(NormalIdentifier(function.mac));
        identifiers.insert(NormalIdentifier(key));
        if (isFcoe) {
            function.fcoe = FcoePartFrom(told_, key, identity.secondText, identifiers);
        } else if (identity.functionType == tavroapi::EthernetFunction) {
            function.ethernet = EthernetPartFrom(told_, key, identity.secondText);
        } else {
            function.iscsi = IscsiPartFrom(told_, key);
        }
        port.functions.push_back(std::move(function));
    }

    // The shown spelling where it is the same MAC.
    static const std::string& MacOf(const FunctionAddress& address) {
        return NormalIdentifier(address.addressText) == NormalIdentifier(address.keyText)
                   ? address.addressText
                   : address.keyText;
    }

    // A WWN ends in a MAC, by habit that of the function.
    static std::string MacOfFcoe(const FunctionAddress& address) {
        const std::string digits = NormalIdentifier(address.keyText);
        return IsMac(address.addressText) || digits.size() != tavrosim::WwnDigits
                   ? address.addressText
                   : digits.substr(tavrosim::WwnDigits - tavrosim::MacDigits);
    }

    // What all functions of the adapter tell of it: the first one counts.
    void TellCommon(tavrosim::Adapter& adapter) {
        std::optional<std::uint32_t> partitionState;
        std::optional<std::wstring> state;
        for (const tavrosim::Port& port : adapter.ports) {
            for (const tavrosim::Function& function : port.functions) {
                const std::string& key = tavrosim::KeyOf(function);
                if (!partitionState) {
                    partitionState = told_.By<EntryPoint::GetPartitionState>(FunctionQuery(key));
                }
                if (adapter.type.empty()) {
                    adapter.type = told_.By<EntryPoint::GetAdapterType>(FunctionQuery(key))
                                       .value_or(std::string());
                }
                if (!state) {
                    state = told_.By<OperationCode::ReadAdapterState>(key);
                }
            }
        }
        const std::uint32_t told = partitionState.value_or(tavroapi::NotPartitioned);
        adapter.partitionState =
            told == tavroapi::PartitionedForGood || told == tavroapi::Partitioned
                ? told
                : tavroapi::NotPartitioned;
        adapter.state = tavrolib::BytesFromUtf8(tavrolib::Utf8FromWide(state.value_or(L"")));
    }

    // The card's drivers are those of the first functions of their kinds.
    static void ShareDrivers(tavrosim::Adapter& adapter) {
        tavrosim::Drivers& drivers = adapter.card.emplace().drivers;
        std::map<const std::string*, bool> isTaken;
        const auto share = [&isTaken](std::optional<std::string>& own, std::string& shared) {
            if (own && !std::exchange(isTaken[&shared], true)) {
                shared = *own;
            }
            if (own == shared) {
                own.reset();
            }
        };
        for (tavrosim::Port& port : adapter.ports) {
            for (tavrosim::Function& function : port.functions) {
                if (auto& own = tavrosim::OwnHardware(function)) {
                    share(own->driver, function.fcoe    ? drivers.fcoe
                                       : function.iscsi ? drivers.iscsi
                                                        : drivers.ethernet);
                    share(own->driverVersion, drivers.version);
                }
            }
        }
    }

    void AddIsnsServers() {
        for (const tavrosim::Adapter& adapter : model_.host.adapters) {
            for (const tavrosim::Port& port : adapter.ports) {
                for (const tavrosim::Function& function : port.functions) {
                    const auto servers =
                        function.iscsi ? told_.By<OperationCode::ListIsnsServers>(function.mac)
                                       : std::nullopt;
                    if (servers) {
                        model_.host.isnsServers.assign(
                            servers->begin(),
                            std::next(servers->begin(), static_cast<std::ptrdiff_t>(std::min(
                                                            servers->size(), MostTargets))));
                        return;
                    }
                }
            }
        }
    }

    void Omit(std::string reason) { model_.omissions.push_back(std::move(reason)); }

    const Told& told_;
    CapturedModel model_;
    std::map<std::uint32_t, std::set<std::string>> identifiers_;  // by type, in normal form
};

}  // namespace

CapturedModel ModelFrom(const Told& told) {
    return ModelMaker(told).Make();
}

}  // namespace tavrohost
