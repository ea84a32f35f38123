#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>

#include "simulator/host/personalities.h"
#include "tavroapi/codes.h"
#include "twin/check/contradictions.h"
#include "twin/check/walk.h"

namespace tavrohost {
namespace {

using tavrosim::Adapter;
using tavrosim::Function;
using tavrosim::Partitions;
using tavrosim::Port;

constexpr const char* NothingWaits =
    "nothing can be pending, since the completion code says that changes do not wait for a restart";
constexpr const char* AlreadyInForce = "what is pending is in force already";

bool IsPartitioned(const Adapter& adapter) {
    return adapter.partitionState == tavroapi::Partitioned ||
           adapter.partitionState == tavroapi::PartitionedForGood;
}

bool HasOneKind(const Function& function) {
    return int{function.ethernet.has_value()} + int{function.iscsi.has_value()} +
               int{function.fcoe.has_value()} ==
           1;
}

std::optional<int> PercentageOf(const std::string& text) {
    constexpr int Whole = 100;
    int number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isOne =
        error == std::errc() && end == text.data() + text.size() && number >= 0 && number <= Whole;
    return isOne ? std::optional(number) : std::nullopt;
}

void CheckLimits(const Partitions& partitions, const Place& place, Findings& findings) {
    const Place functions(place, "functions");
    for (std::size_t index = 0; index < partitions.functions.size(); ++index) {
        const Place function(functions, index);
        const auto limit = [&](const std::string& text, const char* name) {
            const std::optional<int> percentage = PercentageOf(text);
            if (!percentage) {
                findings.Add(Place(function, name), "a whole number from 0 to 100 is wanted");
            }
            return percentage;
        };
        const auto lower = limit(partitions.functions[index].lowerLimit, "lowerLimit");
        const auto upper = limit(partitions.functions[index].upperLimit, "upperLimit");
        if (lower && upper && *lower > *upper) {
            findings.Add(function, "the lower limit is above the upper one");
        }
    }
}

bool IsCompletionCode(std::int32_t code) {
    return code == 0 || code == tavroapi::AppliedAtRestart || code == tavroapi::ValueRefused;
}

void CheckCompletionCode(std::int32_t code, const Place& place, Findings& findings) {
    if (!IsCompletionCode(code)) {
        findings.Add(Place(place, "completionCode"), "0, 5 or 201 is wanted");
    }
}

bool AreEqual(const Partitions& one, const Partitions& other) {
    return one.mode == other.mode && one.flowControl == other.flowControl &&
           one.functions == other.functions;
}

void CheckPartitions(const Adapter& adapter, const Place& place, Findings& findings) {
    const bool isPartitioned = IsPartitioned(adapter);
    const Partitions inForce = adapter.partitions.value_or(Partitions{});
    if (adapter.partitions) {
        const Place partitions(place, "partitions");
        CheckCompletionCode(inForce.completionCode, partitions, findings);
        if (isPartitioned) {
            CheckLimits(inForce, partitions, findings);
        }
        const char* const otherMode =
            isPartitioned ? tavrosim::SingleFunctionMode : tavrosim::PartitionedMode;
        const bool isFree = adapter.partitionState == tavroapi::Partitioned ||
                            adapter.partitionState == tavroapi::NotPartitioned;
        if (isFree && inForce.mode == otherMode &&
            findings.IsReadable(Place(place, "partitionState"))) {
            findings.Add(Place(partitions, "mode"),
                         "the adapter's partition state tells another mode");
        }
    }
    if (adapter.pendingPartitions) {
        const Place pending(place, "pendingPartitions");
        CheckLimits(*adapter.pendingPartitions, pending, findings);
        if (!findings.IsReadable(Place(place, "partitions")) || !findings.IsReadable(pending)) {
            return;
        }
        if (inForce.completionCode != tavroapi::AppliedAtRestart) {
            findings.Add(pending, NothingWaits);
        }
        if (AreEqual(*adapter.pendingPartitions, inForce)) {
            findings.Add(pending, AlreadyInForce);
        }
    }
}

void CheckResources(const tavrosim::Resources& resources, const Place& place, Findings& findings) {
    CheckCompletionCode(resources.completionCode, place, findings);
    if (resources.pendingPersonality && findings.IsReadable(place)) {
        const Place pending(place, "pendingPersonality");
        if (resources.completionCode != tavroapi::AppliedAtRestart) {
            findings.Add(pending, NothingWaits);
        }
        if (*resources.pendingPersonality == resources.personality) {
            findings.Add(pending, AlreadyInForce);
        }
    }
}

// Whether the function is where its number puts it, and what the partitions in force make of it.
void CheckFunction(const Adapter& adapter, const Place& adapterPlace, std::size_t port,
                   const Function& function, const Place& place, Findings& findings) {
    const std::size_t ownPort = function.number % adapter.ports.size();
    if (ownPort != port) {
        findings.Add(Place(place, "number"),
                     "a function of this number belongs to port " + std::to_string(ownPort + 1));
    }
    const bool isKnown = findings.IsReadable(Place(adapterPlace, "partitionState")) &&
                         findings.IsReadable(Place(adapterPlace, "partitions")) &&
                         findings.IsReadable(Place(place, "number"));
    if (!isKnown || !IsPartitioned(adapter) || !adapter.partitions || !HasOneKind(function)) {
        return;
    }
    const auto& partitions = adapter.partitions->functions;
    if (function.number >= partitions.size()) {
        findings.Add(Place(place, "number"), "a partitioned adapter has the functions 0 to " +
                                                 std::to_string(partitions.size() - 1));
    } else if (partitions[function.number].personality != tavrosim::PersonalityOf(function)) {
        findings.Add(place, "the partitions give this function another personality");
    }
}

void CheckPorts(const Adapter& adapter, const Place& place, Findings& findings) {
    const Place ports(place, "ports");
    OnceEach<std::string> names("another port of the adapter has this name", findings);
    OnceEach<std::uint32_t> numbers("another function of the adapter has this number", findings);
    for (std::size_t index = 0; index < adapter.ports.size(); ++index) {
        const Port& port = adapter.ports[index];
        const Place at(ports, index);
        names.Meet(port.name, Place(at, "name"));
        if (port.resources) {
            CheckResources(*port.resources, Place(at, "resources"), findings);
        }
        ForEachAt(port.functions, Place(at, "functions"),
                  [&](const Function& function, const Place& functionPlace) {
                      numbers.Meet(function.number, Place(functionPlace, "number"));
                      CheckFunction(adapter, place, index, function, functionPlace, findings);
                  });
    }
}

}  // namespace

void CheckAdapters(const tavrosim::Host& host, const Place& place, Findings& findings) {
    OnceEach<std::uint32_t> numbers("another adapter has this number", findings);
    ForEachAt(host.adapters, Place(place, "adapters"),
              [&](const Adapter& adapter, const Place& at) {
                  numbers.Meet(adapter.number, Place(at, "number"));
                  if (adapter.type != "CNA" && adapter.type != tavrosim::EthernetPersonality) {
                      findings.Add(Place(at, "type"), "\"CNA\" or \"Ethernet\" is wanted");
                  }
                  if (adapter.partitionState < tavroapi::NotPartitioned ||
                      adapter.partitionState > tavroapi::Partitioned) {
                      findings.Add(Place(at, "partitionState"), "1, 2 or 3 is wanted");
                  }
                  CheckPartitions(adapter, at, findings);
                  CheckPorts(adapter, at, findings);
              });
}

}  // namespace tavrohost
