#include "iscsi/targets.h"

#include <algorithm>
#include <list>

#include "cli/login_options.h"
#include "cli/prompts.h"
#include "console/console.h"
#include "iscsi/phrases.h"
#include "iscsi/portal_operands.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rules.h"
#include "mgmt/text.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavro {

using tavroapi::OperationCode;
using tavroapi::TargetRecord;

namespace {

constexpr std::size_t NamePosition = 5;
constexpr std::size_t AddressPosition = 6;
constexpr std::size_t PortPosition = 7;

constexpr Row<TargetRecord> TargetRows[] = {
    {MessageId::TargetName, &TargetRecord::name},
    {MessageId::TargetAlias, &TargetRecord::text2},
    {MessageId::ConnectionState, &TargetRecord::text3},
    {MessageId::TargetPortalAddress, &TargetRecord::portalAddress},
    {MessageId::TargetPortalPort, &TargetRecord::portalPort},
    {MessageId::TargetPortalGroup, &TargetRecord::text7},
    {MessageId::TargetDiscovery, &TargetRecord::text6},
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
    constexpr std::wstring_view Gap = L"   \t";
    console::ShowEach(targets, [&](const TargetRecord& target) {
        std::wstring line = ToWide(target.text3);
        line += Gap;
        line += ToWide(target.text6);
        line += Gap;
        line += ToWide(target.name);
        console::PrintLine(line);
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

}  // namespace

void ListTargets(const std::string& mac) {
    ShowTargets<OperationCode::ListTargets>(mac, MessageId::TargetListTitle,
                                            MessageId::TargetListFailed);
}

void ListActiveTargets(const std::string& mac) {
    ShowTargets<OperationCode::ListActiveTargets>(mac, MessageId::ActiveTargetListTitle,
                                                  MessageId::ActiveTargetListFailed);
}

void ShowTarget(const std::string& mac, Arguments arguments) {
    ShowPleaseWait();
    const std::string name = ArgumentAt(arguments, NamePosition);
    TargetRecord target;
    if (DoOperation<OperationCode::ReadTarget>(mac, name, target) != CallOutcome::Done) {
        ShowFailure(MessageId::TargetInfoFailed);
        return;
    }
    ShowMessage(MessageId::TargetInfoTitle, NoValue, Layout::Title);
    ShowRows(target, TargetRows);
    ShowClosingRules();
}

void LogInToTarget(const std::string& mac, Arguments arguments) {
    ShowMessage(MessageId::PleaseWait);
    tavroapi::PlacedTargetLogin place;
    tavroapi::TargetLoginRecord& login = place.record;
    const LoginSecretsGuard secretsGuard(login.login);
    login.targetName = ArgumentAt(arguments, NamePosition);
    login.portalAddress = ArgumentAt(arguments, AddressPosition);
    if (!AcceptPortalAddress(login.portalAddress)) {
        return;
    }
    login.portalPort = PortNumberOrDefault(arguments, PortPosition);
    login.text2 = "No";

    if (!IsDiscovered(mac, login.targetName)) {
        if (!ConfirmNewTarget()) {
            ShowMessage(MessageId::LoginAbandoned);
            return;
        }
        login.confirmedNew = 1;
    }

    ResetLoginOptions(login.login);
    const bool optionsAccepted =
        arguments.size() <= PortPosition || ParseLoginOptions(login.login, arguments) == 0;
    const CallOutcome outcome = DoOperation<OperationCode::LogInToTarget>(mac, login);
    if (outcome == CallOutcome::Done && optionsAccepted) {
        ShowMessage(MessageId::LoggedIn);
    } else {
        ShowLastError();
    }
}

void RemoveTarget(const std::string& mac, Arguments arguments) {
    const std::string name = ArgumentAt(arguments, NamePosition);
    if (DoOperation<OperationCode::RemoveTarget>(mac, name) == CallOutcome::Done) {
        ShowMessage(MessageId::TargetRemoved);
    } else {
        ShowLastError();
    }
}

}  // namespace tavro
