#include <algorithm>

#include "simulator/host/lookup.h"
#include "simulator/model/from_records.h"
#include "tavroapi/codes.h"
#include "twin/capture/function_model.h"

namespace tavrohost {
namespace {

using tavroapi::OperationCode;

// The personality that the functions of an undivided port speak for where the library tells none.
std::string LikelyPersonality(const tavrosim::Port& port) {
    const auto has = [&port](auto part) {
        return std::ranges::any_of(port.functions, [part](const tavrosim::Function& function) {
            return (function.*part).has_value();
        });
    };
    return has(&tavrosim::Function::fcoe) && !has(&tavrosim::Function::iscsi)
               ? tavrosim::FcoePersonality
               : tavrosim::IscsiPersonality;
}

// What the first function that tells anything tells.
template <OperationCode Code>
auto FirstTold(const Told& told, const tavrosim::Port& port) {
    std::optional<tavroapi::OutputOf<Code>> first;
    for (const tavrosim::Function& function : port.functions) {
        if (!first) {
            first = told.By<Code>(tavrosim::KeyOf(function));
        }
    }
    return first;
}

}  // namespace

void TellPartitions(const Told& told, tavrosim::Adapter& adapter) {
    for (tavrosim::Port& port : adapter.ports) {
        const auto config = FirstTold<OperationCode::ReadPartitions>(told, port);
        if (config && !adapter.partitions) {
            adapter.partitions = tavrosim::PartitionsFrom(*config);
            adapter.partitions->completionCode = tavroapi::AppliedAtRestart;
        }
        if (port.functions.empty()) {
            continue;
        }
        tavrosim::Resources& resources = port.resources.emplace();
        resources.completionCode = tavroapi::AppliedAtRestart;
        const auto setting = FirstTold<OperationCode::ReadPersonality>(told, port);
        const auto personality = setting ? tavrosim::PortPersonalityFrom(*setting) : std::nullopt;
        if (personality) {
            resources.personality = *personality;
        } else if (adapter.partitionState == tavroapi::NotPartitioned) {
            resources.personality = LikelyPersonality(port);
        }
    }
}

}  // namespace tavrohost
