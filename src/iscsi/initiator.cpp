// The host's iSCSI initiator, and the ping that goes out from one of its ports.
#include "iscsi/initiator.h"

#include "cli/login_options.h"
#include "cli/validation.h"
#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "platform/crash_dump.h"

namespace tavro {

using tavroapi::OperationCode;

namespace {

// The request addresses the host as a whole.
const std::string Host;

constexpr std::uint32_t RepliesMissing = 0x9017;

// A ping of which replies are missing has completed all the same.
bool PingCompleted(CallOutcome outcome) {
    return outcome == CallOutcome::Done ||
           (outcome == CallOutcome::Failed && LastStatus == RepliesMissing);
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

}  // namespace

void GetInitiator() {
    platform::ForbidCrashDumps();
    tavroapi::InitiatorRecord initiator;
    const LoginSecretsGuard guard(initiator.login);
    if (DoOperation<OperationCode::ReadInitiator>(Host, initiator) != CallOutcome::Done) {
        ShowLastError();
        return;
    }
    console::EndLine();
    ShowMessage(MessageId::InitiatorName, initiator.name);
}

void SetInitiator(Arguments arguments) {
    tavroapi::InitiatorRecord initiator;
    const LoginSecretsGuard guard(initiator.login);
    initiator.name = ArgumentAt(arguments, 3);
    ResetLoginOptions(initiator.login);
    if (arguments.size() > 4) {
        ParseLoginOptions(initiator.login, arguments);
    }
    if (DoOperation<OperationCode::SetInitiator>(Host, initiator) == CallOutcome::Done) {
        ShowMessage(MessageId::InitiatorSet);
    } else {
        ShowLastError();
    }
}

void PingFromIscsiPort(const std::string& mac, Arguments arguments) {
    if (arguments.size() <= 4) {
        ShowFailure(MessageId::IscsiPingFailed);
        return;
    }
    tavroapi::IscsiPingRequest request{
        .count = "5", .packetSize = "32", .timeout = "500", .address = arguments[4]};
    tavroapi::IscsiPingResult result;
    ShowMessage(MessageId::IscsiPingStarted);
    console::EndLine();
    if (!PingCompleted(DoOperation<OperationCode::PingFromIscsiPort>(mac, request, result))) {
        ShowFailure(MessageId::IscsiPingFailed);
        return;
    }
    const std::int32_t loss = LossPercentage(request.count, result.received);
    ShowMessage(MessageId::IscsiPingAddress, request.address);
    ShowMessage(MessageId::IscsiPingSent, request.count);
    ShowMessage(MessageId::IscsiPingReceived, result.received);
    ShowMessage(MessageId::IscsiPingLoss, std::to_string(loss) + "%");
}

}  // namespace tavro
