#include "adapters/listing.h"

#include "adapters/inventory.h"
#include "cli/invocation.h"
#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/rule_lines.h"
#include "mgmt/text.h"

namespace tavro {

namespace {

const char* ProtocolName(std::uint32_t functionType) {
    switch (functionType) {
        case tavroapi::EthernetFunction:
            return "Ethernet";
        case tavroapi::FcoeFunction:
            return "FCoE";
        default:
            return "iSCSI";
    }
}

void PrintFunction(const tavroapi::FunctionAddress& address,
                   const tavroapi::FunctionIdentity& identity) {
    ShowMessage(MessageId::FunctionNumber, std::to_string(address.functionNumber), Layout::Row);
    ShowMessage(MessageId::FunctionAddress, address.addressText, Layout::Row);
    ShowMessage(MessageId::FunctionProtocol, ProtocolName(identity.functionType), Layout::Row);
    ShowMessage(MessageId::FunctionSecondText, identity.secondText, Layout::Row);
    ShowMessage(MessageId::FunctionKey, identity.keyText, Layout::Row);
    console::Print(L"\t");
    console::PrintLine(Rule78);
}

// A port's functions come out grouped by the parity of their numbers, even ones first.
void PrintFunctions(const PortFunctions& functions) {
    for (const std::uint32_t parity : {0U, 1U}) {
        VisitFunctions(functions, [parity](const auto& address, const auto& identity) {
            if ((address.functionNumber & 1U) == parity) {
                PrintFunction(address, identity);
            }
            return console::OutputIsLost();
        });
    }
}

// Lists one adapter, until output is lost; true when the functions of at least one of its ports
// were listed.
bool ListAdapter(EntryCache& cache, tavroapi::AdapterRecord& adapter) {
    ShowMessage(MessageId::AdapterName, adapter.name, Layout::Row);
    adapter.portNames.unique();
    bool anyListed = false;
    for (const std::string& portName : adapter.portNames) {
        // Before the library is asked for what nobody would see.
        console::Flush();
        if (console::OutputIsLost()) {
            break;
        }
        PortFunctions functions;
        const CallOutcome outcome = ReadPortFunctions(cache, adapter.name, portName, functions);
        if (outcome == CallOutcome::NotResolved) {
            break;
        }
        console::Print(L"\n\t[" + ToWide(portName) + L"]\n\n");
        if (outcome == CallOutcome::Failed) {
            ShowFailure(MessageId::PortFunctionsFailed);
            continue;
        }
        PrintFunctions(functions);
        anyListed = true;
    }
    return anyListed;
}

bool ListHost(EntryCache& cache) {
    switch (ReadHostName(cache)) {
        case CallOutcome::NotResolved:
            ShowFailure(MessageId::HostNameUnavailable);
            return false;
        case CallOutcome::Failed:
            ShowFailure(MessageId::HostNameFailed);
            return false;
        case CallOutcome::Done:
            break;
    }
    ShowMessage(MessageId::AdapterListTitle, HostName, Layout::Title);

    std::list<tavroapi::AdapterRecord> adapters;
    if (ReadAdapters(cache, adapters) == CallOutcome::Failed) {
        ShowFailure(MessageId::AdaptersFailed);
        return false;
    }
    bool anyListed = false;
    for (tavroapi::AdapterRecord& adapter : adapters) {
        if (console::OutputIsLost()) {
            break;
        }
        anyListed = ListAdapter(cache, adapter) || anyListed;
    }
    return anyListed;
}

// Lists the host's name, its adapters, and each port's functions with the identifiers that the
// other commands take. Failures are reported where they happen; the listing goes on with the next
// port.
void ListAdapters(const Invocation& invocation) {
    if (!ListHost(invocation.cache)) {
        ShowFailure(MessageId::NoAdapterListed);
    }
}

}  // namespace

std::span<const Command> ListingCommands() {
    static constexpr Decision ListingDecision = Decision::EachOf(
        {tavroapi::GetDiscoveredAdaptersEntry::Name, tavroapi::GetPortWWNsEntry::Name});
    static constexpr Command Rows[] = {
        {.code = CommandCode{5},
         .form = {"-showadapter"},
         .access = AccessClass::Warns,
         .decidedBy = ListingDecision,
         .handler = ListAdapters},
    };
    return Rows;
}

}  // namespace tavro
