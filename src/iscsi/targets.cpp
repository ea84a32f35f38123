// The iSCSI targets that a port's initiator knows.
#include "iscsi/commands.h"

#include <algorithm>
#include <list>

#include "cli/invocation.h"
#include "cli/login_options.h"
#include "console/console.h"
#include "iscsi/phrases.h"
#include "iscsi/portal_operands.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/record_secrets.h"
#include "mgmt/rows.h"
#include "mgmt/rule_lines.h"
#include "mgmt/text.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavro {

using tavroapi::OperationCode;
using tavroapi::TargetRecord;

namespace {

constexpr Row<TargetRecord> TargetRows[] = {
    {MessageId::TargetName, &TargetRecord::name},
    {MessageId::TargetAlias, &TargetRecord::alias},
    {MessageId::ConnectionState, &TargetRecord::connectionState},
    {MessageId::TargetPortalAddress, &TargetRecord::portalAddress},
    {MessageId::TargetPortalPort, &TargetRecord::portalPort},
    {MessageId::TargetPortalGroup, &TargetRecord::portalGroup},
    {MessageId::TargetDiscovery, &TargetRecord::discovery},
};

// Lists the targets that one of the two listing operations returns.
template <OperationCode Listing>
void ShowTargets(const std::string& mac, MessageId title, MessageId failure) {
    ShowPleaseWait();
    std::list<TargetRecord> targets;
    if (DoOperation<Listing>(mac, targets) != CallOutcome::Done) {
        ShowFailure(failure);
        return;
    }
    ShowMessage(title);
    console::PrintLine(Rule96);
    ShowMessage(MessageId::TargetListColumns);
    console::PrintLine(Rule96);
    constexpr std::string_view Gap = "   \t";
    console::ShowEach(targets, [&](const TargetRecord& target) {
        console::PrintWidened(target.connectionState);
        console::PrintWidened(Gap);
        console::PrintWidened(target.discovery);
        console::PrintWidened(Gap);
        console::PrintWidened(target.name);
        console::EndLine();
    });
    if (targets.empty()) {
        ShowNotice(MessageId::NoTargets);
    }
    console::PrintLine(Rule96);
}

// Whether the initiator has discovered a target of that name; blanks around names do not count.
bool IsDiscovered(const std::string& mac, const std::string& name) {
    std::list<TargetRecord> targets;
    if (DoOperation<OperationCode::ListTargets>(mac, targets) != CallOutcome::Done) {
        return false;
    }
    return std::ranges::any_of(targets, [&](const TargetRecord& target) {
        return WithoutOuterBlanks(target.name) == WithoutOuterBlanks(name);
    });
}

// Asks whether an undiscovered target is meant. Only the answer's first character counts; the rest
// of its line is not left to the questions that follow.
bool ConfirmNewTarget() {
    ShowPrompt(MessageId::AskLoginToNewTarget);
    const char answer = console::ReadCharacter();
    if (answer != 'Y' && answer != 'y') {
        return false;
    }
    console::DropRestOfLine();
    return true;
}

// Lists the targets that the port's initiator has discovered.
void ListTargets(const Invocation& invocation) {
    ShowTargets<OperationCode::ListTargets>(invocation.port, MessageId::TargetListTitle,
                                            MessageId::TargetListFailed);
}

// Lists the targets that the port's initiator is connected to.
void ListActiveTargets(const Invocation& invocation) {
    ShowTargets<OperationCode::ListActiveTargets>(invocation.port, MessageId::ActiveTargetListTitle,
                                                  MessageId::ActiveTargetListFailed);
}

// Shows one target.
void ShowTarget(const Invocation& invocation) {
    ShowPleaseWait();
    const std::string name = invocation.Text(operand::TargetName);
    TargetRecord target;
    if (DoOperation<OperationCode::ReadTarget>(invocation.port, name, target) !=
        CallOutcome::Done) {
        ShowFailure(MessageId::TargetInfoFailed);
        return;
    }
    ShowMessage(MessageId::TargetInfoTitle, NoValue, Layout::Title);
    ShowRows(target, TargetRows);
    ShowClosingRules();
}

// Logs in to a target, after a question when it has not been discovered. The default port number
// stands in for one that is missing or refused.
void LogInToTarget(const Invocation& invocation) {
    ShowMessage(MessageId::PleaseWait);
    tavroapi::PlacedTargetLogin place;
    tavroapi::TargetLoginRecord& login = place.record;
    const RecordSecretsGuard guard(login);
    login.targetName = invocation.Text(operand::TargetName);
    login.portalAddress = invocation.Text(operand::TargetAddress);
    if (!AcceptPortalAddress(login.portalAddress)) {
        return;
    }
    login.portalPort = PortNumberOrDefault(invocation);
    login.text2 = "No";

    if (!IsDiscovered(invocation.port, login.targetName)) {
        if (!ConfirmNewTarget()) {
            ShowMessage(MessageId::LoginAbandoned);
            return;
        }
        login.confirmedNew = 1;
    }

    ResetLoginOptions(login.login);
    const bool optionsAccepted = !invocation.Has(operand::PortNumber) ||
                                 ParseLoginOptions(login.login, invocation.arguments) == 0;
    const CallOutcome outcome = DoOperation<OperationCode::LogInToTarget>(invocation.port, login);
    if (outcome == CallOutcome::Done && optionsAccepted) {
        ShowMessage(MessageId::LoggedIn);
    } else {
        ShowLastError();
    }
}

// Makes the initiator forget a target.
void RemoveTarget(const Invocation& invocation) {
    const std::string name = invocation.Text(operand::TargetName);
    if (DoOperation<OperationCode::RemoveTarget>(invocation.port, name) == CallOutcome::Done) {
        ShowMessage(MessageId::TargetRemoved);
    } else {
        ShowLastError();
    }
}

}  // namespace

std::span<const Command> IscsiTargetCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{14},
         .form = {"-iscsi", operand::PortMac, "-target", "-listall"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ListTargets,
         .handler = ListTargets},
        {.code = CommandCode{15},
         .form = {"-iscsi", operand::PortMac, "-target", "-listactive"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ListActiveTargets,
         .handler = ListActiveTargets},
        {.code = CommandCode{16},
         .form = {"-iscsi", operand::PortMac, "-target", "-getinfo", operand::TargetName},
         .tooFew = CommandCode::TooFewArguments,
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadTarget,
         .handler = ShowTarget},
        {.code = CommandCode{17},
         .form = {"-iscsi", operand::PortMac, "-target", "-login", operand::TargetName,
                  operand::TargetAddress, Optional(operand::PortNumber),
                  Optional(operand::LoginOptions)},
         .tooFew = CommandCode::TooFewArguments,
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::LogInToTarget,
         .handler = LogInToTarget},
        {.code = CommandCode{19},
         .form = {"-iscsi", operand::PortMac, "-target", "-remove", operand::TargetName},
         .tooFew = CommandCode::TooFewArguments,
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::RemoveTarget,
         .handler = RemoveTarget},
    };
    return Rows;
}

}  // namespace tavro
