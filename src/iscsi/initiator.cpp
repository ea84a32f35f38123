// The host's iSCSI initiator, and the ping that goes out from one of its ports.
#include "iscsi/commands.h"

#include <stdexcept>

#include "cli/invocation.h"
#include "cli/login_options.h"
#include "cli/validation.h"
#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/record_secrets.h"
#include "platform/crash_dump.h"
#include "tavroapi/codes.h"

namespace tavro {

using tavroapi::OperationCode;

namespace {

constexpr std::int32_t PingCount = 5;

// A ping of which replies are missing has completed all the same.
bool PingCompleted(CallOutcome outcome) {
    return outcome == CallOutcome::Done ||
           (outcome == CallOutcome::Failed && LastStatus == tavroapi::IscsiPingRepliesMissing);
}

// The library may have written either count, and any 32-bit number; the arithmetic wraps around at
// 32 bits. Nothing is lost of nothing.
std::int32_t LossPercentage(const std::string& sentText, const std::string& receivedText) {
    const std::int32_t sent = ParseSigned(sentText);
    const std::int32_t received = ParseSigned(receivedText);
    if (sent == 0) {
        return 0;
    }
    const auto lost = static_cast<std::uint32_t>(sent) - static_cast<std::uint32_t>(received);
    // One quotient does not fit into 32 bits, that of the smallest number and -1.
    const std::int64_t percentage = std::int64_t{static_cast<std::int32_t>(lost * 100U)} / sent;
    return static_cast<std::int32_t>(percentage);
}

// Whether the library tells of as many replies as it was asked for.
bool AllRepliesCame(const tavroapi::IscsiPingRequest&, const tavroapi::IscsiPingResult& result) {
    try {
        return ParseSigned(result.received) >= PingCount;
    } catch (const std::logic_error&) {
        return false;
    }
}

// Shows the name of the host's iSCSI initiator.
void GetInitiator(const Invocation&) {
    platform::ForbidCrashDumps();
    tavroapi::InitiatorRecord initiator;
    const RecordSecretsGuard guard(initiator);
    if (DoOperation<OperationCode::ReadInitiator>(WholeHost, initiator) != CallOutcome::Done) {
        ShowLastError();
        return;
    }
    console::EndLine();
    ShowMessage(MessageId::InitiatorName, initiator.name);
}

// Sets the initiator's name and how it logs in. May ask for CHAP names and secrets.
void SetInitiator(const Invocation& invocation) {
    tavroapi::InitiatorRecord initiator;
    const RecordSecretsGuard guard(initiator);
    initiator.name = invocation.Text(operand::InitiatorName);
    ResetLoginOptions(initiator.login);
    if (invocation.Has(operand::LoginOptions)) {
        ParseLoginOptions(initiator.login, invocation.arguments);
    }
    if (DoOperation<OperationCode::SetInitiator>(WholeHost, initiator) == CallOutcome::Done) {
        ShowMessage(MessageId::InitiatorSet);
    } else {
        ShowLastError();
    }
}

// Pings an address from an iSCSI port and shows how many replies came. Throws std::invalid_argument
// or std::out_of_range when the library's count of replies is no 32-bit number.
void PingFromIscsiPort(const Invocation& invocation) {
    if (!invocation.Has(operand::PingAddress)) {
        ShowFailure(MessageId::IscsiPingFailed);
        return;
    }
    tavroapi::IscsiPingRequest request{.count = std::to_string(PingCount),
                                       .packetSize = "32",
                                       .timeout = "500",
                                       .address = invocation.Text(operand::PingAddress)};
    tavroapi::IscsiPingResult result;
    ShowMessage(MessageId::IscsiPingStarted);
    console::EndLine();
    if (!PingCompleted(
            DoOperation<OperationCode::PingFromIscsiPort>(invocation.port, request, result))) {
        ShowFailure(MessageId::IscsiPingFailed);
        return;
    }
    const std::int32_t loss = LossPercentage(request.count, result.received);
    ShowMessage(MessageId::IscsiPingAddress, request.address);
    ShowMessage(MessageId::IscsiPingSent, request.count);
    ShowMessage(MessageId::IscsiPingReceived, result.received);
    ShowMessage(MessageId::IscsiPingLoss, std::to_string(loss) + "%");
}

}  // namespace

std::span<const Command> InitiatorCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{9},
         .form = {"-iscsi", "-getinitiator"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadInitiator,
         .handler = GetInitiator},
        {.code = CommandCode{10},
         .form = {"-iscsi", "-setinitiator", operand::InitiatorName,
                  Optional(operand::LoginOptions)},
         .tooFew = CommandCode::TooFewArguments,
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::SetInitiator,
         .handler = SetInitiator},
        {.code = CommandCode{27},
         .form = {"-iscsi", operand::PortMac, "-ping", Uncounted(operand::PingAddress)},
         .access = AccessClass::Runs,
         .decidedBy = Decision::ByRecordsOf<OperationCode::PingFromIscsiPort, AllRepliesCame>(),
         .handler = PingFromIscsiPort},
    };
    return Rows;
}

}  // namespace tavro
