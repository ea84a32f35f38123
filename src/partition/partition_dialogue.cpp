// The questions of `-npar <MAC> -set`.
#include "partition/partition_dialogue.h"

#include "cli/questions.h"
#include "cli/validation.h"
#include "partition/ports.h"
#include "partition/value_names.h"

namespace tavro {

namespace {

using tavroapi::PartitionConfig;
using tavroapi::PartitionFunction;

// Marks the record as written by this command.
constexpr const char* WrittenTag = "7";

constexpr const char* LowestLimit = "0";
constexpr const char* HighestLimit = "100";
constexpr std::int32_t LimitMaximum = 100;

constexpr Choice Modes[] = {
    {"1", SingleFunctionMode},
    {"2", PartitionedMode},
};

constexpr Refusal NotOnTheMenu = Refusal::SpacedNotice(MessageId::PartitionMenuRefused);

void SetDefaults(PartitionConfig& config) {
    for (PartitionFunction& function : config.functions) {
        GivePersonality(function, EthernetPersonality());
        function.lowerLimit = LowestLimit;
        function.upperLimit = HighestLimit;
    }
}

// The answer as a number without leading zeros.
std::string AskLimit(MessageId prompt, std::size_t function) {
    const std::string prefix = "[PF" + std::to_string(function) + "]";
    const Question question = {.prompt = prompt,
                               .refusal = Refusal::SpacedNotice(MessageId::PartitionLimitRefused),
                               .prefix = prefix};
    return NumberToText(ParseUnsigned(AskNumber(question, LimitMaximum)));
}

FunctionPersonality AskFunctionPersonality() {
    return AskUntil({MessageId::AskPartitionPersonality,
                     Refusal::SpacedNotice(MessageId::PartitionPersonalityRefused)},
                    FindPersonality);
}

// Only the second function of a port can be other than Ethernet, and only on a converged adapter.
void AskFunctions(std::string_view adapterType, const std::vector<std::size_t>& functions,
                  PartitionConfig& config) {
    if (functions.size() > 1) {
        GivePersonality(config.functions[functions[1]],
                        adapterType == "CNA" ? AskFunctionPersonality() : EthernetPersonality());
    }
    for (const std::size_t number : functions) {
        PartitionFunction& function = config.functions[number];
        function.lowerLimit = AskLimit(MessageId::AskPartitionLowerLimit, number);
        function.upperLimit = AskLimit(MessageId::AskPartitionUpperLimit, number);
    }
}

}  // namespace

void AskPartitions(std::string_view adapterType, std::int32_t portCount, PartitionConfig& config) {
    const std::string mode = AskChoice({MessageId::AskPartitionMode, NotOnTheMenu}, Modes);
    const bool isPartitioned = mode == PartitionedMode;
    SetDefaults(config);
    for (std::size_t port = 0; port < ShownPorts(portCount); ++port) {
        PrintPortHeading(port);
        if (port < config.flowControl.size()) {
            config.flowControl[port] =
                AskUntil({MessageId::AskPartitionFlowControl, NotOnTheMenu}, FlowControlCode);
        }
        if (isPartitioned) {
            AskFunctions(adapterType, FunctionsOfPort(port, portCount), config);
        }
    }
    config.tag = WrittenTag;
    config.mode = mode;
    if (isPartitioned) {
        config.portCount = portCount;
    }
}

}  // namespace tavro
