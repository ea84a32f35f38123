// The target portals, the addresses at which a port's initiator discovers targets.
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
#include "mgmt/rule_lines.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavro {

using tavroapi::OperationCode;

namespace {

void ShowPortals(const std::list<tavroapi::PortalEntry>& portals) {
    // With two blanks as its value the title ends in " : ".
    ShowMessage(MessageId::PortalListTitle, "  ");
    console::PrintLine(Rule54);
    ShowMessage(MessageId::PortalListColumns);
    console::PrintLine(Rule54);
    console::ShowEach(portals, [](const tavroapi::PortalEntry& portal) {
        console::PrintWidened(portal.address);
        console::PrintWidened(" : \t");
        console::PrintWidened(portal.port);
        console::EndLine();
    });
    if (portals.empty()) {
        ShowNotice(MessageId::NoPortals);
    }
    console::PrintLine(Rule54);
}

// Whether an active target is reached through the address. What cannot be read does not count.
bool IsPortalInUse(const std::string& mac, const std::string& address) {
    std::list<tavroapi::TargetRecord> targets;
    if (DoOperation<OperationCode::ListActiveTargets>(mac, targets) != CallOutcome::Done) {
        return false;
    }
    return std::ranges::any_of(targets, [&](const tavroapi::TargetRecord& listed) {
        tavroapi::TargetRecord target;
        return DoOperation<OperationCode::ReadTarget>(mac, listed.name, target) ==
                   CallOutcome::Done &&
               target.portalAddress == address;
    });
}

// Lists the portals that the port's initiator knows. A failure is told without its reason.
void ListPortals(const Invocation& invocation) {
    ShowPleaseWait();
    std::list<tavroapi::PortalEntry> portals;
    if (DoOperation<OperationCode::ListPortals>(invocation.port, portals) != CallOutcome::Done) {
        ShowMessage(MessageId::PortalListFailed);
        return;
    }
    ShowPortals(portals);
}

// Adds a portal; the default port number stands in for one that is missing or refused.
void AddPortal(const Invocation& invocation) {
    tavroapi::PortalRecord portal;
    const RecordSecretsGuard guard(portal);
    portal.address = invocation.Text(operand::PortalAddress);
    if (!AcceptPortalAddress(portal.address)) {
        return;
    }
    portal.port = PortNumberOrDefault(invocation);
    ResetLoginOptions(portal.login);
    const bool optionsAccepted = !invocation.Has(operand::PortNumber) ||
                                 ParseLoginOptions(portal.login, invocation.arguments) == 0;
    if (!CanDoOperation()) {
        ShowLastError();
        return;
    }

    ShowPleaseWait();
    const CallOutcome outcome = DoOperation<OperationCode::AddPortal>(invocation.port, portal);
    if (outcome == CallOutcome::Done && optionsAccepted) {
        ShowMessage(MessageId::PortalAdded);
    } else {
        ShowLastError();
    }
}

// Removes a portal, unless a target is reached through its address. A port number is sent even when
// it is refused.
void RemovePortal(const Invocation& invocation) {
    tavroapi::PortalRecord portal;
    ResetLoginOptions(portal.login);
    portal.address = invocation.Text(operand::PortalAddress);
    if (!AcceptPortalAddress(portal.address)) {
        return;
    }
    portal.port = DefaultIscsiPort;
    if (invocation.Has(operand::PortNumber)) {
        portal.port = invocation.Text(operand::PortNumber);
        AcceptPortNumber(portal.port);
    }
    if (IsPortalInUse(invocation.port, portal.address)) {
        ShowMessage(MessageId::PortalInUse);
        return;
    }

    ShowPleaseWait();
    if (DoOperation<OperationCode::RemovePortal>(invocation.port, portal) == CallOutcome::Done) {
        ShowMessage(MessageId::PortalRemoved);
    } else {
        ShowLastError();
    }
}

}  // namespace

std::span<const Command> PortalCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{11},
         .form = {"-iscsi", operand::PortMac, "-portal", "-listall"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ListPortals,
         .handler = ListPortals},
        {.code = CommandCode{12},
         .form = {"-iscsi", operand::PortMac, "-portal", "-add", operand::PortalAddress,
                  Optional(operand::PortNumber), Optional(operand::LoginOptions)},
         .tooFew = CommandCode::TooFewArguments,
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::AddPortal,
         .handler = AddPortal},
        {.code = CommandCode{13},
         .form = {"-iscsi", operand::PortMac, "-portal", "-remove", operand::PortalAddress,
                  Optional(operand::PortNumber)},
         .tooFew = CommandCode::TooFewArguments,
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::RemovePortal,
         .handler = RemovePortal},
    };
    return Rows;
}

}  // namespace tavro
