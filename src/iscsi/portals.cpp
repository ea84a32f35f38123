#include "iscsi/portals.h"

#include <algorithm>
#include <list>

#include "cli/login_options.h"
#include "cli/prompts.h"
#include "console/console.h"
#include "iscsi/phrases.h"
#include "iscsi/portal_operands.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rules.h"
#include "mgmt/text.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavro {

using tavroapi::OperationCode;

namespace {

constexpr std::size_t AddressPosition = 5;
constexpr std::size_t PortPosition = 6;

void ShowPortals(const std::list<tavroapi::PortalEntry>& portals) {
    // With two blanks as its value the title ends in " : ".
    ShowMessage(MessageId::PortalListTitle, "  ");
    console::PrintLine(Rule54);
    ShowMessage(MessageId::PortalListColumns);
    console::PrintLine(Rule54);
    console::ShowEach(portals, [](const tavroapi::PortalEntry& portal) {
        console::PrintLine(ToWide(portal.address) + L" : \t" + ToWide(portal.port));
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

}  // namespace

void ListPortals(const std::string& mac) {
    ShowPleaseWait();
    std::list<tavroapi::PortalEntry> portals;
    if (DoOperation<OperationCode::ListPortals>(mac, portals) != CallOutcome::Done) {
        ShowMessage(MessageId::PortalListFailed);
        return;
    }
    ShowPortals(portals);
}

void AddPortal(const std::string& mac, Arguments arguments) {
    tavroapi::PortalRecord portal;
    const LoginSecretsGuard secretsGuard(portal.login);
    portal.address = ArgumentAt(arguments, AddressPosition);
    if (!AcceptPortalAddress(portal.address)) {
        return;
    }
    portal.port = PortNumberOrDefault(arguments, PortPosition);
    ResetLoginOptions(portal.login);
    const bool optionsAccepted =
        arguments.size() <= PortPosition || ParseLoginOptions(portal.login, arguments) == 0;
    if (!CanDoOperation()) {
        ShowLastError();
        return;
    }

    ShowPleaseWait();
    const CallOutcome outcome = DoOperation<OperationCode::AddPortal>(mac, portal);
    if (outcome == CallOutcome::Done && optionsAccepted) {
        ShowMessage(MessageId::PortalAdded);
    } else {
        ShowLastError();
    }
}

void RemovePortal(const std::string& mac, Arguments arguments) {
    tavroapi::PortalRecord portal;
    ResetLoginOptions(portal.login);
    portal.address = ArgumentAt(arguments, AddressPosition);
    if (!AcceptPortalAddress(portal.address)) {
        return;
    }
    portal.port = DefaultIscsiPort;
    if (arguments.size() > PortPosition) {
        portal.port = arguments[PortPosition];
        AcceptPortNumber(portal.port);
    }
    if (IsPortalInUse(mac, portal.address)) {
        ShowMessage(MessageId::PortalInUse);
        return;
    }

    ShowPleaseWait();
    if (DoOperation<OperationCode::RemovePortal>(mac, portal) == CallOutcome::Done) {
        ShowMessage(MessageId::PortalRemoved);
    } else {
        ShowLastError();
    }
}

}  // namespace tavro
