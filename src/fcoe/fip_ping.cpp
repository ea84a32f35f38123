// How an FCoE port finds and reaches its fabric: the FIP VLAN ID, and the ping of a target.
#include "fcoe/fip_ping.h"

#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rules.h"
#include "mgmt/text.h"
#include "tavroapi/fcoe_records.h"

namespace tavro {

using tavroapi::OperationCode;

namespace {

constexpr std::size_t OperandArgument = 4;
constexpr std::size_t PingOptionArgument = 5;
constexpr std::size_t PingOptionValueArgument = 6;

// The library is handed this character, not a digit, for an option that lacks its value.
constexpr const char* MissingOptionValue = "\x03";

// The ping was answered, although the status is not that of success.
constexpr std::uint32_t AnsweredWithRemark = 0x8000;

tavroapi::FcoePingRequest PingRequest(Arguments arguments) {
    tavroapi::FcoePingRequest request;
    request.target = ArgumentAt(arguments, OperandArgument);
    std::string optionValue;
    if (arguments.size() == PingOptionValueArgument + 1) {
        optionValue = arguments[PingOptionValueArgument];
    } else if (arguments.size() == PingOptionArgument + 1) {
        optionValue = MissingOptionValue;
    } else {
        return request;
    }
    const std::string option = arguments[PingOptionArgument];
    if (option == "-pcount") {
        request.count = optionValue;
    } else if (option == "-timeout") {
        request.timeout = optionValue;
    }
    return request;
}

bool WasAnswered(CallOutcome outcome) {
    return outcome == CallOutcome::Done ||
           (outcome == CallOutcome::Failed && LastStatus == AnsweredWithRemark);
}

}  // namespace

void PingFromFcoePort(const std::string& wwn, Arguments arguments) {
    tavroapi::FcoePingRequest request = PingRequest(arguments);
    tavroapi::FcoePingResult result;
    const CallOutcome outcome = DoOperation<OperationCode::PingFromFcoePort>(wwn, request, result);
    if (outcome == CallOutcome::NotResolved) {
        ShowMessage(MessageId::FcoePingUnavailable, request.target, Layout::Row);
    }
    if (!WasAnswered(outcome)) {
        ShowLastError();
        return;
    }
    ShowMessage(MessageId::FcoePingTitle, request.target, Layout::Title);
    ShowMessage(MessageId::FcoePingSent, result.libraryText1, Layout::Row);
    ShowMessage(MessageId::FcoePingReceived, result.libraryText5, Layout::Row);
    ShowMessage(MessageId::FcoePingLost, result.libraryText6, Layout::Row);
    ShowMessage(MessageId::FcoePingShortestTime, result.time3 + "ms", Layout::Row);
    ShowMessage(MessageId::FcoePingLongestTime, result.time4 + "ms", Layout::Row);
    ShowMessage(MessageId::FcoePingAverageTime, result.time2 + "ms", Layout::Row);
    ShowClosingRules();
}

void ShowFip(const std::string& wwn) {
    tavroapi::FipConfig config;
    if (DoOperation<OperationCode::ReadFip>(wwn, config) == CallOutcome::Done) {
        console::PrintLine(L"FIP VLAN ID is " + ToWide(config.vlanId));
    }
}

void SetFip(const std::string& wwn, Arguments arguments) {
    tavroapi::FipConfig config;
    config.vlanId = ArgumentAt(arguments, OperandArgument);
    if (DoOperation<OperationCode::WriteFip>(wwn, config) == CallOutcome::Done) {
        console::PrintLine(L"Set success" + ToWide(config.vlanId));
    }
}

}  // namespace tavro
