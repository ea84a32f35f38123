#include "partition/partitions.h"

#include "adapters/partition_queries.h"
#include "cli/invocation.h"
#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rule_lines.h"
#include "mgmt/text.h"
#include "partition/commands.h"
#include "partition/confirmation.h"
#include "partition/partition_dialogue.h"
#include "partition/ports.h"
#include "partition/value_names.h"
#include "tavroapi/codes.h"

namespace tavro {

namespace {

// How much of a configuration is shown.
enum class PartitionView { Summary, Detail };

using tavroapi::OperationCode;
using tavroapi::PartitionConfig;
using tavroapi::PartitionFunction;

constexpr std::uint32_t FourPorts = 4;

// The labels of a function's fields from the second on; the first is not shown.
constexpr MessageId FunctionLabels[] = {
    MessageId::PartitionFunctionText1, MessageId::PartitionFunctionText2,
    MessageId::PartitionFunctionText3, MessageId::PartitionFunctionText4,
    MessageId::PartitionFunctionText5, MessageId::PartitionFunctionText6,
    MessageId::PartitionFunctionText7, MessageId::PartitionFunctionText8,
    MessageId::PartitionFunctionText9,
};
static_assert(std::size(FunctionLabels) + 1 == tavroapi::FieldCount<PartitionFunction>());

void ShowTitle(MessageId title) {
    console::EndLine();
    ShowMessage(title, NoValue, Layout::Title);
    console::EndLine();
}

// Empty for a port that the record has no flow control for.
std::string_view FlowControlOfPort(const PartitionConfig& config, std::size_t port) {
    return port < config.flowControl.size() ? std::string_view(config.flowControl[port])
                                            : std::string_view();
}

void ShowFunction(std::size_t number, const PartitionFunction& function) {
    ShowMessage(MessageId::PartitionFunctionNumber, std::to_string(number), Layout::Row);
    tavroapi::ForEachField(function,
                           [](std::size_t position, std::string_view, const std::string& text) {
                               if (position > 0) {
                                   ShowMessage(FunctionLabels[position - 1], text, Layout::Row);
                               }
                           });
    console::Print(L"\t");
    console::PrintLine(Rule78);
}

void ShowDetail(const PartitionConfig& config) {
    for (std::size_t port = 0; port < ShownPorts(config.portCount); ++port) {
        PrintPortHeading(port);
        console::EndLine();
        ShowMessage(MessageId::PartitionFlowControl, FlowControlOfPort(config, port), Layout::Row);
        console::EndLine();
        for (const std::size_t number : FunctionsOfPort(port, config.portCount)) {
            ShowFunction(number, config.functions[number]);
        }
    }
}

void PrintFunctionSummary(std::size_t number, const PartitionFunction& function) {
    console::PrintLine(L"\t" + std::to_wstring(number) + L" = " + ToWide(function.personality) +
                       L"\t" + ToWide(function.lowerLimit) + L"\t" + ToWide(function.upperLimit));
}

// The codes go to the library; names are shown.
void ShowNewConfiguration(const PartitionConfig& config) {
    ShowTitle(MessageId::NewPartitionsTitle);
    if (config.mode == SingleFunctionMode) {
        ShowNotice(MessageId::SingleFunctionChosen);
        return;
    }
    PartitionConfig named = config;
    ConvertPersonality(named);
    ConvertFlowControl(named, named.portCount);
    ShowPartitionSummary(named);
}

void WriteConfiguration(const std::string& mac, PartitionConfig& config) {
    if (DoOperation<OperationCode::WritePartitions>(mac, config) != CallOutcome::Done) {
        return;
    }
    if (config.result == tavroapi::ValueRefused) {
        ShowNotice(MessageId::ValueRefused);
    } else if (config.result == tavroapi::AppliedAtRestart) {
        ShowNotice(MessageId::RestartNeeded);
    }
}

// Reads and shows the configuration, or a notice in the state in which there is none; the other
// states, a failed reading and a library that lacks an entry point show nothing.
void ShowPartitionConfig(const std::string& mac, PartitionView view) {
    const std::uint32_t state = GetPartitionState(mac).value_or(0);
    if (state == tavroapi::NotPartitioned) {
        ShowSpacedNotice(MessageId::NotPartitioned);
        return;
    }
    if (state != tavroapi::PartitionedForGood && state != tavroapi::Partitioned) {
        return;
    }
    PartitionConfig config;
    if (DoOperation<OperationCode::ReadPartitions>(mac, config) != CallOutcome::Done) {
        return;
    }
    ShowTitle(MessageId::PartitionsTitle);
    if (view == PartitionView::Summary) {
        ShowPartitionSummary(config);
    } else {
        ShowDetail(config);
    }
}

// Shows the configuration in detail.
void ShowPartitions(const Invocation& invocation) {
    ShowPartitionConfig(invocation.port, PartitionView::Detail);
}

// Shows a summary of the configuration, asks for a completely new one, and writes it once it is
// confirmed. Adapters with four ports and partition states that allow no changes are refused. A
// library that lacks an entry point for it ends it without a word before the first question.
void SetPartitions(const Invocation& invocation) {
    const std::string& mac = invocation.port;
    const auto state = GetPartitionState(mac);
    const auto adapterType = state ? GetAdapterType(mac) : std::nullopt;
    const auto portCount = adapterType ? GetAdapterPortNumber(mac) : std::nullopt;
    if (!portCount) {
        return;
    }
    if (*portCount == FourPorts) {
        ShowSpacedNotice(MessageId::FourPortsRefused);
        return;
    }
    if (*state == tavroapi::PartitionedForGood) {
        ShowSpacedNotice(MessageId::PartitionChangeRefused);
        return;
    }
    if (*state != tavroapi::NotPartitioned && *state != tavroapi::Partitioned) {
        return;
    }
    ShowPartitionConfig(mac, PartitionView::Summary);
    // A completely new configuration, not an edit of the current one.
    PartitionConfig config;
    AskPartitions(*adapterType, static_cast<std::int32_t>(*portCount), config);
    ShowNewConfiguration(config);
    if (!AskConfirmation()) {
        // Laid out like a prompt, with its line left open; `-res` shows the same as a notice.
        ShowPrompt(MessageId::ChangesDeclined);
        return;
    }
    WriteConfiguration(mac, config);
}

}  // namespace

void ShowPartitionSummary(const PartitionConfig& config) {
    console::PrintLine(L"\tMulti-function mode: " + ToWide(config.mode));
    for (std::size_t port = 0; port < ShownPorts(config.portCount); ++port) {
        console::PrintLine(L"\tPort" + std::to_wstring(port + 1) + L" >>>");
        console::PrintLine(L"\tFlow_control:" + ToWide(FlowControlOfPort(config, port)));
        if (config.mode != "SF") {
            for (const std::size_t number : FunctionsOfPort(port, config.portCount)) {
                PrintFunctionSummary(number, config.functions[number]);
            }
        }
        console::PrintLine(L"\t-------------------------------");
    }
    console::EndLine();
}

std::span<const Command> PartitionCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{51},
         .form = {"-npar", operand::PortMac, "-get"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadPartitions,
         .handler = ShowPartitions},
        {.code = CommandCode{52},
         .form = {"-npar", operand::PortMac, "-set"},
         .access = AccessClass::Blocked,
         .decidedBy = OperationCode::WritePartitions,
         .handler = SetPartitions},
    };
    return Rows;
}

}  // namespace tavro
