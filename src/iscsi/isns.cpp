// The host's iSNS servers. They are reached through the first iSCSI function on any adapter.
#include "iscsi/commands.h"

#include <list>
#include <string>

#include "adapters/discovery.h"
#include "cli/invocation.h"
#include "cli/validation.h"
#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rule_lines.h"
#include "mgmt/text.h"
#include "tavroapi/iscsi_records.h"

namespace tavro {

using tavroapi::OperationCode;

namespace {

// Scripts match these texts to the letter; the commands never agreed on the blanks.
constexpr const char* NoFunction =
    " There is no iscsi function found on installed CNA card, please configure at lease one iscsi "
    "function";
constexpr const char* NoFunctionToAddTo =
    " There is no iscsi function found on installed CNA card,  please configure at lease one iscsi "
    "function";

// Whether the address is one that a server can have; shows that it is not.
bool AcceptAddress(const std::string& address) {
    const bool valid = IsValidIPv4(address);
    if (!valid) {
        ShowMessage(MessageId::InvalidAddress);
    }
    return valid;
}

// The key of the function to go through; empty when there is none or it cannot be found out.
std::string FindFunction() {
    EntryCache cache;
    std::string keyText;
    return FindIscsiFunction(cache, keyText) == 0 ? keyText : std::string();
}

// Lists the host's iSNS servers.
void ListIsnsServers(const Invocation&) {
    const std::string function = FindFunction();
    if (function.empty()) {
        ShowFailure(MessageId::IsnsListFailed, NoFunction);
        return;
    }
    std::list<std::string> servers;
    if (DoOperation<OperationCode::ListIsnsServers>(function, servers) != CallOutcome::Done) {
        ShowFailure(MessageId::IsnsListFailed);
        return;
    }
    console::PrintLine(Rule54);
    ShowMessage(MessageId::IsnsListTitle);
    console::PrintLine(Rule54);
    console::ShowEach(servers,
                      [](const std::string& server) { console::PrintLine(ToWide(server)); });
    if (servers.empty()) {
        ShowNotice(MessageId::IsnsListEmpty);
    }
    console::PrintLine(Rule54);
}

// Adds an iSNS server.
void AddIsnsServer(const Invocation& invocation) {
    const std::string address = invocation.Text(operand::IsnsServer);
    if (!AcceptAddress(address)) {
        return;
    }
    const std::string function = FindFunction();
    if (function.empty()) {
        ShowFailure(MessageId::IsnsAddFailed, NoFunctionToAddTo);
        return;
    }
    console::PrintNarrowLine("IP Address is  " + address);
    if (DoOperation<OperationCode::AddIsnsServer>(function, address) != CallOutcome::Done) {
        ShowFailure(MessageId::IsnsAddFailed);
        return;
    }
    console::PrintNarrowLine("Please wait...");
    ShowMessage(MessageId::IsnsServerAdded);
}

// Removes an iSNS server.
void RemoveIsnsServer(const Invocation& invocation) {
    const std::string address = invocation.Text(operand::IsnsServer);
    if (!AcceptAddress(address)) {
        return;
    }
    const std::string function = FindFunction();
    if (function.empty()) {
        ShowFailure(MessageId::IsnsListEmpty, NoFunction);
        return;
    }
    // What counts as an empty list is the list as it was before the removal.
    std::list<std::string> servers;
    DoOperation<OperationCode::ListIsnsServers>(function, servers);
    if (DoOperation<OperationCode::RemoveIsnsServer>(function, address) != CallOutcome::Done) {
        console::PrintNarrowLine("remove isns server failed with server ip " + address);
        ShowLastError();
        return;
    }
    if (servers.empty()) {
        console::PrintNarrowLine("iSNS list is empty");
    } else {
        ShowMessage(MessageId::IsnsServerRemoved);
    }
}

}  // namespace

std::span<const Command> IsnsCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{24},
         .form = {"-iscsi", "-isns", "-listall"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ListIsnsServers,
         .handler = ListIsnsServers},
        {.code = CommandCode{25},
         .form = {"-iscsi", "-isns", "-add", operand::IsnsServer},
         .tooFew = CommandCode::TooFewArguments,
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::AddIsnsServer,
         .handler = AddIsnsServer},
        {.code = CommandCode{26},
         .form = {"-iscsi", "-isns", "-remove", operand::IsnsServer},
         .tooFew = CommandCode::TooFewArguments,
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::RemoveIsnsServer,
         .handler = RemoveIsnsServer},
    };
    return Rows;
}

}  // namespace tavro
