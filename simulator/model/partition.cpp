// How adapters are divided into functions, and what the ports of undivided ones are used for.
#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "library/text/text.h"
#include "simulator/host/lookup.h"
#include "simulator/host/personalities.h"
#include "simulator/host/restart.h"
#include "simulator/model/families.h"
#include "simulator/model/from_records.h"
#include "simulator/model/model.h"
#include "tavroapi/codes.h"
#include "tavroapi/partition_records.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavroapi::PartitionConfig;
using tavroapi::PartitionFunction;
using tavroapi::PersonalitySetting;

// A value as requests send it, and as the library keeps and tells it.
struct CodedName {
    std::string_view code;
    std::string_view name;
};

constexpr CodedName Modes[] = {{"0", SingleFunctionMode}, {"2", PartitionedMode}};
constexpr CodedName FlowControls[] = {
    {"0", "Auto"},          {"1", "Tx Enabled"}, {"2", "Rx Enabled"},
    {"3", "Tx/Rx Enabled"}, {"4", "Disabled"},
};
constexpr CodedName Personalities[] = {
    {"3", EthernetPersonality}, {"5", IscsiPersonality}, {"9", FcoePersonality}};
constexpr CodedName PortPersonalities[] = {{"1", IscsiPersonality}, {"2", FcoePersonality}};

template <std::size_t Count>
std::optional<std::string> NameOf(const CodedName (&table)[Count], const std::string& code) {
    const auto found = std::find_if(std::begin(table), std::end(table),
                                    [&code](const CodedName& row) { return row.code == code; });
    return found == std::end(table) ? std::nullopt : std::optional<std::string>(found->name);
}

// The same of a text that may be the name as well.
template <std::size_t Count>
std::optional<std::string> ToldName(const CodedName (&table)[Count], const std::string& told) {
    const bool isName = std::any_of(std::begin(table), std::end(table),
                                    [&told](const CodedName& row) { return row.name == told; });
    return isName ? told : NameOf(table, told);
}

bool IsPercentage(const std::string& text) {
    constexpr std::size_t MostDigits = 3;
    constexpr int Whole = 100;
    return !text.empty() && text.size() <= MostDigits &&
           std::all_of(text.begin(), text.end(),
                       [](char digit) { return digit >= '0' && digit <= '9'; }) &&
           std::stoi(text) <= Whole;
}

Outcome RefusePartitionValue(const std::wstring& details) {
    return Refused(Status::InvalidPartitionValue, L"The settings have a value that is not valid.",
                   L"Correct the value and set them again.", details);
}

const Function* FindNumber(const Adapter& adapter, std::size_t number) {
    for (const Port& port : adapter.ports) {
        for (const Function& function : port.functions) {
            if (function.number == number) {
                return &function;
            }
        }
    }
    return nullptr;
}

// What the library tells of a function besides its settings: its identifiers on this host.
void DescribeFunction(const Host& host, const Function* function, PartitionFunction& record) {
    auto& [mac, wwn, interfaceName, initiator, isPresent] = record.libraryTexts4To8;
    isPresent = function == nullptr ? "No" : "Yes";
    if (function == nullptr) {
        return;
    }
    mac = function->mac;
    if (function->fcoe) {
        wwn = function->fcoe->portWwn;
    }
    if (function->ethernet) {
        interfaceName = function->ethernet->interfaceName;
    }
    if (function->iscsi) {
        initiator = host.initiator.name;
    }
}

// The partitions in force; whether there are any is told by the adapter's state.
Partitions PartitionsOf(const Adapter& adapter) {
    Partitions partitions = adapter.partitions.value_or(Partitions{});
    partitions.mode =
        adapter.partitionState == tavroapi::NotPartitioned ? SingleFunctionMode : PartitionedMode;
    return partitions;
}

Outcome ReadPartitions(const Viewed<Function>& at, PartitionConfig& config) {
    const Partitions partitions = PartitionsOf(at.adapter);
    config.mode = partitions.mode;
    config.flowControl = partitions.flowControl;
    for (std::size_t i = 0; i < config.functions.size(); ++i) {
        const PartitionedFunction& function = partitions.functions[i];
        PartitionFunction& record = config.functions[i];
        record.personality = function.personality;
        record.lowerLimit = function.lowerLimit;
        record.upperLimit = function.upperLimit;
        record.companion = function.personality == EthernetPersonality ? "16" : "0";
        DescribeFunction(at.host, FindNumber(at.adapter, i), record);
    }
    config.portCount = static_cast<std::int32_t>(at.adapter.ports.size());
    return Done();
}

// Whether the adapter works alike with both. The functions count only where there are partitions.
bool AreAlike(const Partitions& one, const Partitions& other) {
    return one.mode == other.mode && one.flowControl == other.flowControl &&
           (one.mode == SingleFunctionMode || one.functions == other.functions);
}

// What becomes of a change, and the completion code that tells so.
enum class When { AsItIs, Now, AtRestart, Never };
struct Verdict {
    When when = When::AsItIs;
    std::int32_t result = 0;
};

// `code` is what the adapter answers to changes; `isInForce`: there is nothing to change. What was
// pending is then pending no more.
Verdict JudgeChange(std::int32_t code, bool isInForce) {
    if (code == tavroapi::ValueRefused) {
        return {When::Never, code};
    }
    if (isInForce) {
        return {When::AsItIs, 0};
    }
    return {code == tavroapi::AppliedAtRestart ? When::AtRestart : When::Now, code};
}

// Takes the settings over into `partitions`, of which a part may be changed when it refuses.
Outcome Apply(const PartitionConfig& config, std::size_t portCount, Partitions& partitions) {
    const auto mode = NameOf(Modes, config.mode);
    if (!mode) {
        return RefusePartitionValue(L"The mode is neither \"0\" nor \"2\".");
    }
    partitions.mode = *mode;
    for (std::size_t i = 0; i < std::min(portCount, partitions.flowControl.size()); ++i) {
        const auto flowControl = NameOf(FlowControls, config.flowControl[i]);
        if (!flowControl) {
            return RefusePartitionValue(L"The flow control of port " + std::to_wstring(i + 1) +
                                        L" is no code from \"0\" to \"4\".");
        }
        partitions.flowControl[i] = *flowControl;
    }
    for (std::size_t i = 0; i < partitions.functions.size(); ++i) {
        const PartitionFunction& wanted = config.functions[i];
        const auto personality = NameOf(Personalities, wanted.personality);
        if (!personality || !IsPercentage(wanted.lowerLimit) || !IsPercentage(wanted.upperLimit)) {
            return RefusePartitionValue(L"The personality or a limit of function " +
                                        std::to_wstring(i) + L" is not valid.");
        }
        partitions.functions[i] = {*personality, wanted.lowerLimit, wanted.upperLimit};
    }
    return Done();
}

Outcome WritePartitions(const Edited<Function>& at, PartitionConfig& config) {
    Adapter& adapter = at.adapter;
    if (adapter.partitionState == tavroapi::PartitionedForGood) {
        return Refused(Status::PartitionsFixed, L"The partitions of this adapter are fixed.",
                       L"Change them with the tool that made them.");
    }
    const Partitions inForce = PartitionsOf(adapter);
    Partitions wanted = adapter.pendingPartitions.value_or(inForce);
    Outcome applied = Apply(config, adapter.ports.size(), wanted);
    if (!applied.IsDone()) {
        return applied;
    }
    const Verdict verdict = JudgeChange(inForce.completionCode, AreAlike(wanted, inForce));
    config.result = verdict.result;
    if (verdict.when == When::Now) {
        adapter.pendingPartitions.reset();
        ApplyPartitions(at.host, adapter, std::move(wanted));
    } else if (verdict.when == When::AtRestart) {
        adapter.pendingPartitions = std::move(wanted);
    } else if (verdict.when == When::AsItIs) {
        adapter.pendingPartitions.reset();
    }
    return Done();
}

// Refuses to speak of the personality of a port that has none of its own.
Outcome CheckHasPersonality(const Adapter& adapter) {
    if (adapter.type == EthernetPersonality || adapter.partitionState != tavroapi::NotPartitioned) {
        return Refused(Status::PersonalityFixed, L"This port has no personality of its own.",
                       L"Choose a port of a converged adapter that is not partitioned.");
    }
    return Done();
}

Outcome ReadPersonality(const Viewed<Function>& at, PersonalitySetting& setting) {
    Outcome outcome = CheckHasPersonality(at.adapter);
    if (outcome.IsDone()) {
        setting.value = PersonalityOf(at.port);
    }
    return outcome;
}

Outcome WritePersonality(const Edited<Function>& at, PersonalitySetting& setting) {
    Outcome outcome = CheckHasPersonality(at.adapter);
    if (!outcome.IsDone()) {
        return outcome;
    }
    const auto personality = NameOf(PortPersonalities, setting.value);
    if (!personality) {
        return RefusePartitionValue(L"The personality is neither \"1\" nor \"2\".");
    }
    std::optional<Resources>& kept = at.port.resources;
    Resources& resources = kept ? *kept : kept.emplace();
    const Verdict verdict =
        JudgeChange(resources.completionCode, *personality == resources.personality);
    setting.result = verdict.result;
    if (verdict.when == When::Now) {
        resources.pendingPersonality.reset();
        const auto index = static_cast<std::size_t>(&at.port - at.adapter.ports.data());
        ApplyPersonality(at.host, at.adapter, index, *personality);
    } else if (verdict.when == When::AtRestart) {
        resources.pendingPersonality = *personality;
    } else if (verdict.when == When::AsItIs) {
        resources.pendingPersonality.reset();
    }
    return Done();
}

}  // namespace

std::span<const OperationModel> PartitionOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::ReadPartitions, Function, ReadPartitions>(),
        Changes<OperationCode::WritePartitions, Function, WritePartitions>(),
        Reads<OperationCode::ReadPersonality, Function, ReadPersonality>(),
        Changes<OperationCode::WritePersonality, Function, WritePersonality>(),
    };
    return Rows;
}

Partitions PartitionsFrom(const PartitionConfig& config) {
    Partitions partitions;
    const auto take = [](const auto& told, std::string& kept) {
        if (told) {
            kept = *told;
        }
    };
    take(ToldName(Modes, config.mode), partitions.mode);
    for (std::size_t i = 0; i < partitions.flowControl.size(); ++i) {
        const std::string& told = config.flowControl[i];
        partitions.flowControl[i] = ToldName(FlowControls, told).value_or(told);
    }
    for (std::size_t i = 0; i < partitions.functions.size(); ++i) {
        const PartitionFunction& told = config.functions[i];
        PartitionedFunction& function = partitions.functions[i];
        take(ToldName(Personalities, told.personality), function.personality);
        function.lowerLimit = told.lowerLimit;
        function.upperLimit = told.upperLimit;
    }
    return partitions;
}

std::optional<std::string> PortPersonalityFrom(const PersonalitySetting& setting) {
    return ToldName(PortPersonalities, setting.value);
}

}  // namespace tavrosim
