// The virtual ports of a physical FCoE port: list, create and delete them, and list the targets and
// LUNs that one of them sees. Their labels are the program's own; scripts match them to the letter.
#include "fcoe/commands.h"

#include <list>
#include <string_view>

#include "cli/invocation.h"
#include "console/console.h"
#include "mgmt/operation.h"
#include "mgmt/text.h"
#include "tavroapi/fcoe_records.h"

namespace tavro {

using tavroapi::OperationCode;
using tavroapi::VirtualPortLunRecord;
using tavroapi::VirtualPortRecord;
using tavroapi::VirtualPortTargetRecord;

namespace {

constexpr std::wstring_view VirtualPortRule =
    L"Virtual Port--------------------------------------------";
constexpr std::wstring_view Rule57 = L"---------------------------------------------------------";
static_assert(VirtualPortRule.size() == 12 + 44 && Rule57.size() == 57);

// A line of a display: the label as it stands and the member that follows it directly.
template <class Record>
struct Line {
    std::wstring_view label;
    std::string Record::*value;
};

// The misspelling and its blank have become part of what scripts expect.
constexpr Line<VirtualPortRecord> VirtualPortLines[] = {
    {L"Port WWN:", &VirtualPortRecord::portWwn},
    {L"Node WWN:", &VirtualPortRecord::nodeWwn},
    {L"Fabric Name:", &VirtualPortRecord::fabricName},
    {L"Parent WWPN:", &VirtualPortRecord::parentWwpn},
    {L"FCF MacAddress:", &VirtualPortRecord::fcfMac},
    {L"FCF Node WWN:", &VirtualPortRecord::fcfNodeWwn},
    {L"FCF Port WWN:", &VirtualPortRecord::fcfPortWwn},
    {L"FCID:", &VirtualPortRecord::fcid},
    {L"FCMap:", &VirtualPortRecord::fcMap},
    {L"Fabric VLAN:", &VirtualPortRecord::fabricVlan},
    {L"Fabric Prioirty: ", &VirtualPortRecord::fabricPriority},
    {L"FPMA Mac Address:", &VirtualPortRecord::fpmaMac},
};

constexpr Line<VirtualPortTargetRecord> TargetLines[] = {
    {L"Port Name:", &VirtualPortTargetRecord::portName},
    {L"Node Name:", &VirtualPortTargetRecord::nodeName},
    {L"FCID:", &VirtualPortTargetRecord::fcid},
    {L"SCSI Bus Number:", &VirtualPortTargetRecord::scsiBus},
    {L"SCSI Target Number:", &VirtualPortTargetRecord::scsiTarget},
};

constexpr Line<VirtualPortLunRecord> LunLines[] = {
    {L"SCSIUnitNumber:", &VirtualPortLunRecord::scsiUnit},
    {L"DeviceType:", &VirtualPortLunRecord::deviceType},
    {L"Capacity:", &VirtualPortLunRecord::capacity},
    {L"VendorID:", &VirtualPortLunRecord::vendorId},
    {L"ProductID:", &VirtualPortLunRecord::productId},
    {L"ProductRevision:", &VirtualPortLunRecord::productRevision},
    {L"DeviceName:", &VirtualPortLunRecord::deviceName},
    {L"Status:", &VirtualPortLunRecord::status},
    {L"Volumes:", &VirtualPortLunRecord::volumes},
};

template <class Record>
void PrintLineOf(const Record& record, const Line<Record>& line) {
    console::Print(line.label);
    console::PrintLine(ToWide(record.*line.value));
}

template <class Record, std::size_t Count>
void PrintLines(const Record& record, const Line<Record> (&lines)[Count]) {
    for (const Line<Record>& line : lines) {
        PrintLineOf(record, line);
    }
}

std::list<tavroapi::VirtualPortRequest> RequestsFor(const Invocation& invocation) {
    std::list<tavroapi::VirtualPortRequest> requests;
    for (const char* const portWwn : invocation.From(operand::VirtualPorts)) {
        tavroapi::VirtualPortRequest& request = requests.emplace_back();
        request.portWwn = portWwn;
        request.physicalPort = invocation.port;
    }
    return requests;
}

tavroapi::VirtualPortQuery QueryFor(const Invocation& invocation) {
    return {.portWwn = invocation.Text(operand::VirtualPort), .physicalPort = invocation.port};
}

// Lists the virtual ports of a physical port.
void ListVirtualPorts(const Invocation& invocation) {
    std::list<VirtualPortRecord> ports;
    if (DoOperation<OperationCode::ListVirtualPorts>(invocation.port, ports) != CallOutcome::Done) {
        return;
    }
    console::PrintLine(L"There are totally " + std::to_wstring(ports.size()) + L" virtual ports.");
    console::ShowEach(ports, [](const VirtualPortRecord& port) {
        console::PrintLine(VirtualPortRule);
        PrintLines(port, VirtualPortLines);
        console::PrintLine(Rule57);
    });
}

// Creates virtual ports.
void CreateVirtualPorts(const Invocation& invocation) {
    std::list<tavroapi::VirtualPortRequest> requests = RequestsFor(invocation);
    if (DoOperation<OperationCode::CreateVirtualPorts>(invocation.port, requests) ==
        CallOutcome::Done) {
        console::PrintLine(L"Create success for virtual port ");
    }
}

// Deletes virtual ports.
void DeleteVirtualPorts(const Invocation& invocation) {
    std::list<tavroapi::VirtualPortRequest> requests = RequestsFor(invocation);
    if (DoOperation<OperationCode::DeleteVirtualPorts>(invocation.port, requests) ==
        CallOutcome::Done) {
        console::PrintLine(L"Delete success for virtual port ");
    }
}

// Lists the targets that a virtual port sees.
void ListVirtualPortTargets(const Invocation& invocation) {
    tavroapi::VirtualPortQuery query = QueryFor(invocation);
    std::list<VirtualPortTargetRecord> targets;
    if (DoOperation<OperationCode::ListVirtualPortTargets>(invocation.port, query, targets) !=
        CallOutcome::Done) {
        return;
    }
    console::ShowEach(targets, [](const VirtualPortTargetRecord& target) {
        console::PrintLine(VirtualPortRule);
        PrintLines(target, TargetLines);
        console::PrintLine(Rule57);
    });
}

// Lists the LUNs that a virtual port sees.
void ListVirtualPortLuns(const Invocation& invocation) {
    tavroapi::VirtualPortQuery query = QueryFor(invocation);
    std::list<VirtualPortLunRecord> luns;
    if (DoOperation<OperationCode::ListVirtualPortLuns>(invocation.port, query, luns) !=
        CallOutcome::Done) {
        return;
    }
    console::ShowEach(luns, [](const VirtualPortLunRecord& lun) {
        PrintLineOf(lun, {L"Target Port WWN:", &VirtualPortLunRecord::targetPortWwn});
        console::PrintLine(Rule57);
        PrintLines(lun, LunLines);
        console::PrintLine(Rule57);
    });
}

}  // namespace

std::span<const Command> VirtualPortCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{46},
         .form = {"-fcoe", operand::PortWwn, "-getvirtualportinfo"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ListVirtualPorts,
         .handler = ListVirtualPorts},
        {.code = CommandCode{47},
         .form = {"-fcoe", operand::PortWwn, "-createvirtualport", operand::VirtualPorts},
         .access = AccessClass::Blocked,
         .decidedBy = OperationCode::CreateVirtualPorts,
         .handler = CreateVirtualPorts},
        {.code = CommandCode{48},
         .form = {"-fcoe", operand::PortWwn, "-deletevirtualport", operand::VirtualPorts},
         .access = AccessClass::Blocked,
         .decidedBy = OperationCode::DeleteVirtualPorts,
         .handler = DeleteVirtualPorts},
        {.code = CommandCode{49},
         .form = {"-fcoe", operand::PortWwn, "-getvirtualporttarget", operand::VirtualPort},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ListVirtualPortTargets,
         .handler = ListVirtualPortTargets},
        {.code = CommandCode{50},
         .form = {"-fcoe", operand::PortWwn, "-getvirtualporttargetlun", operand::VirtualPort},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ListVirtualPortLuns,
         .handler = ListVirtualPortLuns},
    };
    return Rows;
}

}  // namespace tavro
