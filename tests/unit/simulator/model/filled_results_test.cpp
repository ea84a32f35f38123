// A result record that comes in filled is replaced, not added to.
#include <gtest/gtest.h>

#include <list>
#include <string>
#include <vector>

#include "library/records/record_json.h"
#include "simulator/host/host_file.h"
#include "simulator/model/model.h"
#include "tavroapi/described_operations.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavrolib::Json;
using tavrolib::Secrets;
using tavrolib::ToJson;

const std::string VirtualPortWwn = "20:02:02:00:5E:10:00:04";

// A host on which every list has something to tell.
Host FullHost() {
    Host host = DefaultHost();
    for (Adapter& adapter : host.adapters) {
        for (Port& port : adapter.ports) {
            for (Function& function : port.functions) {
                if (function.iscsi && !function.iscsi->storage.targets.empty()) {
                    IscsiStorage& storage = function.iscsi->storage;
                    IscsiSession& session = storage.sessions.emplace_back();
                    session.id = 1;
                    session.target = storage.targets.front().name;
                } else if (function.fcoe && !function.fcoe->bindings.empty()) {
                    VirtualPort& virtualPort = function.fcoe->virtualPorts.emplace_back();
                    virtualPort.portWwn = VirtualPortWwn;
                    virtualPort.fcid = "010401";
                }
            }
        }
    }
    return host;
}

// What commands address functions by, and the empty text for the host.
std::vector<std::string> Requests(const Host& host) {
    std::vector<std::string> requests{""};
    for (const Adapter& adapter : host.adapters) {
        for (const Port& port : adapter.ports) {
            for (const Function& function : port.functions) {
                requests.push_back(function.fcoe ? function.fcoe->portWwn : function.mac);
            }
        }
    }
    return requests;
}

std::vector<std::string> TargetNames(const Host& host) {
    std::vector<std::string> names;
    for (const NetworkTarget& target : host.iscsiTargets) {
        names.push_back(target.name);
    }
    for (const FabricTarget& target : host.fcoeFabric.targets) {
        names.push_back(target.portWwn);
    }
    return names;
}

template <class Output>
inline constexpr bool IsList = false;
template <class Element>
inline constexpr bool IsList<std::list<Element>> = true;

// Performs the operation twice with the same record, each time on the host as it was at first, and
// returns whether the record holds the list of a success.
template <OperationCode Code>
bool StaysTheSame(const Host& host, const std::string& request, void* input) {
    using Output = tavroapi::OutputOf<Code>;
    const OperationModel* const model = FindModel(static_cast<std::uint32_t>(Code));
    Output output{};
    const auto perform = [&] {
        Host fresh = host;
        return model->read != nullptr ? model->read(fresh, request, input, &output)
                                      : model->change(fresh, request, input, &output);
    };
    if (!perform().IsDone()) {
        return false;
    }
    const Json once = ToJson(output, Secrets::Shown);
    EXPECT_TRUE(perform().IsDone());
    EXPECT_EQ(ToJson(output, Secrets::Shown), once)
        << "operation " << static_cast<int>(Code) << " of " << request;
    return IsList<Output> && !once.empty();
}

template <OperationCode Code>
void Check(const Host& host) {
    using Input = tavroapi::InputOf<Code>;
    using Output = tavroapi::OutputOf<Code>;
    if constexpr (!std::same_as<Output, tavroapi::NoRecord>) {
        bool hasListed = false;
        for (const std::string& request : Requests(host)) {
            if constexpr (std::same_as<Input, tavroapi::CharacterString>) {
                for (std::string name : TargetNames(host)) {
                    hasListed = StaysTheSame<Code>(host, request, name.data()) || hasListed;
                }
            } else if constexpr (std::same_as<Input, tavroapi::VirtualPortQuery>) {
                Input input{};
                input.portWwn = VirtualPortWwn;
                input.physicalPort = request;
                hasListed = StaysTheSame<Code>(host, request, &input) || hasListed;
            } else {
                Input input{};
                hasListed = StaysTheSame<Code>(host, request, &input) || hasListed;
            }
        }
        EXPECT_EQ(hasListed, IsList<Output>) << "operation " << static_cast<int>(Code);
    }
}

template <OperationCode... Codes>
void CheckAll(const Host& host, tavroapi::OperationList<Codes...>) {
    (Check<Codes>(host), ...);
}

TEST(FilledResults, AnOperationReplacesWhatTheRecordHeld) {
    CheckAll(FullHost(), tavroapi::DescribedOperations{});
}

}  // namespace
}  // namespace tavrosim
