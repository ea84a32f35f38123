// How an FCoE port finds and reaches its fabric: the FIP VLAN ID, and the ping of a target.
#include "fcoe/commands.h"

#include "cli/invocation.h"
#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rule_lines.h"
#include "mgmt/text.h"
#include "tavroapi/codes.h"
#include "tavroapi/fcoe_records.h"

namespace tavro {

using tavroapi::FcoePingRequest;
using tavroapi::OperationCode;

namespace {

// The library is handed this character, not a digit, for an option that lacks its value.
constexpr const char* MissingOptionValue = "\x03";

// What the options of a ping set.
constexpr struct {
    const Operand& option;
    const Operand& value;
    std::string FcoePingRequest::*setting;
} PingOptions[] = {
    {operand::PingCountOption, operand::PingCount, &FcoePingRequest::count},
    {operand::PingTimeoutOption, operand::PingTimeout, &FcoePingRequest::timeout},
};

// An option counts only right behind the target, with at most one word behind it.
FcoePingRequest PingRequest(const Invocation& invocation) {
    FcoePingRequest request;
    request.target = invocation.Text(operand::FcoeTarget);
    for (const auto& [option, value, setting] : PingOptions) {
        if (invocation.Text(option) != option.name) {
            continue;
        }
        if (invocation.EndsWith(value)) {
            request.*setting = invocation.Text(value);
        } else if (invocation.EndsWith(option)) {
            request.*setting = MissingOptionValue;
        }
    }
    return request;
}

// A ping of which replies are missing was answered all the same.
bool WasAnswered(CallOutcome outcome) {
    return outcome == CallOutcome::Done ||
           (outcome == CallOutcome::Failed && LastStatus == tavroapi::FcoePingRepliesMissing);
}

// Whether the library tells of no lost reply.
bool NothingWasLost(const FcoePingRequest&, const tavroapi::FcoePingResult& result) {
    return result.lost.empty() || result.lost == "0";
}

// Pings a target from an FCoE port.
void PingFromFcoePort(const Invocation& invocation) {
    FcoePingRequest request = PingRequest(invocation);
    tavroapi::FcoePingResult result;
    const CallOutcome outcome =
        DoOperation<OperationCode::PingFromFcoePort>(invocation.port, request, result);
    if (outcome == CallOutcome::NotResolved) {
        ShowMessage(MessageId::FcoePingUnavailable, request.target, Layout::Row);
    }
    if (!WasAnswered(outcome)) {
        ShowLastError();
        return;
    }
    ShowMessage(MessageId::FcoePingTitle, request.target, Layout::Title);
    ShowMessage(MessageId::FcoePingSent, result.sent, Layout::Row);
    ShowMessage(MessageId::FcoePingReceived, result.received, Layout::Row);
    ShowMessage(MessageId::FcoePingLost, result.lost, Layout::Row);
    ShowMessage(MessageId::FcoePingShortestTime, result.shortestTime + "ms", Layout::Row);
    ShowMessage(MessageId::FcoePingLongestTime, result.longestTime + "ms", Layout::Row);
    ShowMessage(MessageId::FcoePingAverageTime, result.averageTime + "ms", Layout::Row);
    ShowClosingRules();
}

// Shows the FIP VLAN ID of an FCoE port. Silent on failure.
void ShowFip(const Invocation& invocation) {
    tavroapi::FipConfig config;
    if (DoOperation<OperationCode::ReadFip>(invocation.port, config) == CallOutcome::Done) {
        console::PrintLine(L"FIP VLAN ID is " + ToWide(config.vlanId));
    }
}

// Sets the FIP VLAN ID of an FCoE port. Silent on failure.
void SetFip(const Invocation& invocation) {
    tavroapi::FipConfig config;
    config.vlanId = invocation.Text(operand::VlanId);
    if (DoOperation<OperationCode::WriteFip>(invocation.port, config) == CallOutcome::Done) {
        console::PrintLine(L"Set success" + ToWide(config.vlanId));
    }
}

}  // namespace

std::span<const Command> FipPingCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{41},
         .form = {"-fcoe", operand::PortWwn, "-ping", operand::FcoeTarget,
                  Optional(operand::PingCountOption), Optional(operand::PingCount)},
         .otherForm = {"-fcoe", operand::PortWwn, "-ping", operand::FcoeTarget,
                       Optional(operand::PingTimeoutOption), Optional(operand::PingTimeout)},
         .access = AccessClass::Runs,
         .decidedBy = Decision::ByRecordsOf<OperationCode::PingFromFcoePort, NothingWasLost>(),
         .handler = PingFromFcoePort},
        // The only form that refuses further words, a trailing "-debug" included.
        {.code = CommandCode{44},
         .form = {"-fcoe", operand::PortWwn, "-getfip"},
         .furtherWords = FurtherWords::Refused,
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadFip,
         .handler = ShowFip},
        {.code = CommandCode{45},
         .form = {"-fcoe", operand::PortWwn, "-setfip", operand::VlanId},
         .access = AccessClass::Blocked,
         .decidedBy = OperationCode::WriteFip,
         .handler = SetFip},
    };
    return Rows;
}

}  // namespace tavro
