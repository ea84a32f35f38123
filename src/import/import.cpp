// Applying a saved iSCSI configuration.
#include "import/import.h"

#include <algorithm>
#include <list>

#include "adapters/inventory.h"
#include "cli/invocation.h"
#include "console/console.h"
#include "import/import_keys.h"
#include "mgmt/message.h"
#include "mgmt/record_secrets.h"
#include "mgmt/text.h"
#include "platform/crash_dump.h"
#include "xml/file.h"

namespace tavro {

using tavroapi::OperationCode;
using xml::XmlNode;

namespace {

constexpr const wchar_t* FileName = L"cnadiscovery.xml";

// A document takes several bytes of memory for each of the file, and a file must not take all that
// the host has. A target that was saved takes half a kilobyte.
constexpr std::uint64_t MostBytes = 64U << 20U;

// What the summary tells.
struct Summary {
    std::uint32_t adaptersFound = 0;
    std::uint32_t portsFound = 0;
    std::uint32_t settingsApplied = 0;
    std::uint32_t portalsAdded = 0;
    std::uint32_t targetsLoggedIn = 0;
    std::uint32_t operationsFailed = 0;
};

// Counts an operation on a port, and reports it when it failed.
void Account(CallOutcome outcome, std::uint32_t& done, Summary& summary) {
    if (outcome == CallOutcome::Done) {
        ++done;
        return;
    }
    summary.operationsFailed += outcome == CallOutcome::Failed ? 1 : 0;
    ShowLastError();
}

void ImportInitiator(const XmlNode& element, Summary& summary) {
    tavroapi::InitiatorRecord initiator;
    const RecordSecretsGuard guard(initiator);
    TakeValues(element, initiator);
    const CallOutcome outcome = DoOperation<OperationCode::SetInitiator>(WholeHost, initiator);
    summary.operationsFailed += outcome == CallOutcome::Failed ? 1 : 0;
}

void ImportTcpIp(const XmlNode& element, const std::string& port, Summary& summary) {
    tavroapi::TcpIpSettings settings;
    TakeValues(element, settings);
    Account(DoOperation<OperationCode::SetIscsiTcpIp>(port, settings), summary.settingsApplied,
            summary);
}

void ImportPortal(const XmlNode& element, const std::string& port, Summary& summary) {
    tavroapi::PortalRecord portal;
    const RecordSecretsGuard guard(portal);
    TakeValues(element, portal);
    Account(DoOperation<OperationCode::AddPortal>(port, portal), summary.portalsAdded, summary);
}

void ImportTarget(const XmlNode& element, const std::string& port, Summary& summary) {
    if (!WasConnected(element)) {
        return;
    }
    tavroapi::PlacedTargetLogin placed;
    const RecordSecretsGuard guard(placed.record);
    TakeValues(element, placed.record);
    Account(DoOperation<OperationCode::LogInToTarget>(port, placed.record), summary.targetsLoggedIn,
            summary);
}

constexpr struct {
    std::wstring_view name;
    void (*import)(const XmlNode&, const std::string&, Summary&);
} PortSettings[] = {
    {L"TCP_IP_Setting", ImportTcpIp},
    {L"Portal_Login", ImportPortal},
    {L"Target_Login", ImportTarget},
};

// The children of a port element, in the order of the document.
void ImportPortSettings(const XmlNode& element, const std::string& port, Summary& summary) {
    for (std::size_t index = 0; index < element.ChildCount(); ++index) {
        const XmlNode child = element.Child(index);
        for (const auto& setting : PortSettings) {
            if (setting.name == child.Name()) {
                setting.import(child, port, summary);
            }
        }
    }
}

std::wstring AttributeText(const XmlNode& element, std::size_t index) {
    return std::wstring(element.Attribute(index).value.value_or(L""));
}

// A port element names its port in its first attribute and the function's number in its second.
void ImportPort(const XmlNode& element, EntryCache& cache, const tavroapi::AdapterRecord& adapter,
                Summary& summary) {
    const std::wstring wantedName = AttributeText(element, 0);
    const auto portName = std::ranges::find_if(
        adapter.portNames, [&](const std::string& name) { return ToWide(name) == wantedName; });
    if (portName == adapter.portNames.end()) {
        return;
    }
    PortFunctions functions;
    switch (ReadPortFunctions(cache, adapter.name, *portName, functions)) {
        case CallOutcome::NotResolved:
            ShowMessage(MessageId::LibraryMissing, "");
            return;
        case CallOutcome::Failed:
            ShowMessage(MessageId::ImportPortFailed, "");
            return;
        case CallOutcome::Done:
            break;
    }
    const std::wstring wantedNumber = AttributeText(element, 1);
    const auto function =
        std::ranges::find_if(functions.addresses, [&](const tavroapi::FunctionAddress& candidate) {
            return std::to_wstring(candidate.functionNumber) == wantedNumber;
        });
    if (function != functions.addresses.end()) {
        ++summary.portsFound;
        ImportPortSettings(element, function->keyText, summary);
    }
}

// Every child of the document's top element but the first stands for an adapter, by its number.
void ImportAdapters(const XmlNode& top, EntryCache& cache, Summary& summary) {
    std::list<tavroapi::AdapterRecord> adapters;
    if (ReadAdapters(cache, adapters) != CallOutcome::Done) {
        return;
    }
    for (std::size_t index = 1; index < top.ChildCount(); ++index) {
        const XmlNode element = top.Child(index);
        const std::wstring wantedNumber = AttributeText(element, 0);
        const auto adapter =
            std::ranges::find_if(adapters, [&](const tavroapi::AdapterRecord& candidate) {
                return std::to_wstring(candidate.number) == wantedNumber;
            });
        if (adapter == adapters.end()) {
            continue;
        }
        ++summary.adaptersFound;
        for (std::size_t port = 0; port < element.ChildCount(); ++port) {
            ImportPort(element.Child(port), cache, *adapter, summary);
        }
    }
}

void ShowSummary(const Summary& summary) {
    const auto show = [](MessageId label, std::uint32_t count, Layout layout = Layout::Message) {
        ShowMessage(label, std::to_string(count), layout);
    };
    ShowMessage(MessageId::ImportSummaryTitle);
    show(MessageId::ImportedAdapters, summary.adaptersFound,
         summary.adaptersFound > 0 ? Layout::Message : Layout::Notice);
    show(MessageId::ImportedPorts, summary.portsFound);
    show(MessageId::ImportedTcpIpSettings, summary.settingsApplied);
    show(MessageId::ImportedPortals, summary.portalsAdded);
    show(MessageId::ImportedTargets, summary.targetsLoggedIn);
    show(MessageId::ImportFailures, summary.operationsFailed);
}

// Applies the saved iSCSI configuration "cnadiscovery.xml" of the current directory to the host:
// the initiator, then the TCP/IP settings, portals and target logins of each port that the host
// has. A file that is missing or malformed changes nothing and is passed over in silence; one that
// is too large is told. A failed operation is reported and the import goes on; a summary ends it.
void ImportConfiguration(const Invocation& invocation) {
    if (ReadHostName(invocation.cache) != CallOutcome::Done) {
        return;
    }
    if (!CanDoOperation()) {
        ShowLastError();
        return;
    }
    platform::ForbidCrashDumps();
    xml::XmlResults results;
    const XmlNode top = xml::ParseXmlFile(FileName, results, MostBytes);
    if (results.error == static_cast<std::uint32_t>(xml::XmlError::FileTooLarge)) {
        console::PrintLine(std::wstring(FileName) + L" has more than " +
                           std::to_wstring(MostBytes) + L" bytes. Nothing was imported.");
    }
    if (top.IsEmpty()) {
        return;
    }
    ShowMessage(MessageId::PleaseWait, "");
    Summary summary;
    if (const XmlNode first = top.Child(0); first.Name() == L"Initiator_Login") {
        ImportInitiator(first, summary);
    }
    ImportAdapters(top, invocation.cache, summary);
    ShowSummary(summary);
}

}  // namespace

std::span<const Command> ImportCommands() {
    // Which operations come, the file tells; a port that cannot be read is left out.
    static constexpr Decision ImportDecision = Decision::SomeOf(
        {OperationCode::SetInitiator, OperationCode::SetIscsiTcpIp, OperationCode::AddPortal,
         OperationCode::LogInToTarget, tavroapi::GetDiscoveredAdaptersEntry::Name,
         tavroapi::GetPortWWNsEntry::Name});
    static constexpr Command Rows[] = {
        {.code = CommandCode{4},
         .form = {"-import"},
         .access = AccessClass::Runs,
         .decidedBy = ImportDecision,
         .handler = ImportConfiguration},
    };
    return Rows;
}

}  // namespace tavro
