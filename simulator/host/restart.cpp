#include "simulator/host/restart.h"

#include <string>
#include <utility>
#include <vector>

#include "simulator/host/personalities.h"

namespace tavrosim {
namespace {

// The value of an optional, which then has none.
template <class T>
T Take(std::optional<T>& pending) {
    T value = std::move(*pending);
    pending.reset();
    return value;
}

// The personalities of the partitions in force; none while the adapter is not partitioned.
std::vector<std::string> PersonalitiesOf(const Adapter& adapter) {
    std::vector<std::string> personalities;
    if (adapter.partitionState != tavroapi::NotPartitioned) {
        for (const PartitionedFunction& function :
             adapter.partitions.value_or(Partitions{}).functions) {
            personalities.push_back(function.personality);
        }
    }
    return personalities;
}

void RestartFunction(Function& function) {
    if (function.ethernet && function.ethernet->tcpIp.pendingVlanId) {
        TcpIp& settings = function.ethernet->tcpIp;
        settings.vlanId = Take(settings.pendingVlanId);
    }
}

}  // namespace

void ApplyPartitions(const Host& host, Adapter& adapter, Partitions partitions) {
    const auto former = PersonalitiesOf(adapter);
    adapter.partitionState =
        partitions.mode == SingleFunctionMode ? tavroapi::NotPartitioned : tavroapi::Partitioned;
    adapter.partitions = std::move(partitions);
    if (PersonalitiesOf(adapter) == former) {
        return;
    }
    for (std::size_t index = 0; index < adapter.ports.size(); ++index) {
        RebuildFunctions(host, adapter, index);
    }
}

void ApplyPersonality(const Host& host, Adapter& adapter, std::size_t index,
                      std::string personality) {
    Port& port = adapter.ports[index];
    if (!port.resources) {
        port.resources.emplace();
    }
    port.resources->personality = std::move(personality);
    if (adapter.partitionState == tavroapi::NotPartitioned) {
        RebuildFunctions(host, adapter, index);
    }
}

void Restart(Host& host) {
    for (Adapter& adapter : host.adapters) {
        if (adapter.pendingPartitions) {
            ApplyPartitions(host, adapter, Take(adapter.pendingPartitions));
        }
        for (std::size_t index = 0; index < adapter.ports.size(); ++index) {
            Port& port = adapter.ports[index];
            if (port.resources && port.resources->pendingPersonality) {
                ApplyPersonality(host, adapter, index, Take(port.resources->pendingPersonality));
            }
            for (Function& function : port.functions) {
                RestartFunction(function);
            }
        }
    }
}

}  // namespace tavrosim
