// The virtual ports of a physical FCoE port: list, create and delete them, and list the targets and
// LUNs that one of them sees. Their labels are the program's own; scripts match them to the letter.
#include "fcoe/virtual_ports.h"

#include <list>
#include <string_view>

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

constexpr std::size_t FirstWwnArgument = 4;

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

std::list<tavroapi::VirtualPortRequest> RequestsFor(const std::string& wwn, Arguments arguments) {
    std::list<tavroapi::VirtualPortRequest> requests;
    for (std::size_t i = FirstWwnArgument; i < arguments.size(); ++i) {
        tavroapi::VirtualPortRequest& request = requests.emplace_back();
        request.portWwn = arguments[i];
        request.physicalPort = wwn;
    }
    return requests;
}

tavroapi::VirtualPortQuery QueryFor(const std::string& wwn, Arguments arguments) {
    return {.portWwn = ArgumentAt(arguments, FirstWwnArgument), .physicalPort = wwn};
}

}  // namespace

void ListVirtualPorts(const std::string& wwn) {
    std::list<VirtualPortRecord> ports;
    if (DoOperation<OperationCode::ListVirtualPorts>(wwn, ports) != CallOutcome::Done) {
        return;
    }
    console::PrintLine(L"There are totally " + std::to_wstring(ports.size()) + L" virtual ports.");
    console::ShowEach(ports, [](const VirtualPortRecord& port) {
        console::PrintLine(VirtualPortRule);
        PrintLines(port, VirtualPortLines);
        console::PrintLine(Rule57);
    });
}

void CreateVirtualPorts(const std::string& wwn, Arguments arguments) {
    std::list<tavroapi::VirtualPortRequest> requests = RequestsFor(wwn, arguments);
    if (DoOperation<OperationCode::CreateVirtualPorts>(wwn, requests) == CallOutcome::Done) {
        console::PrintLine(L"Create success for virtual port ");
    }
}

void DeleteVirtualPorts(const std::string& wwn, Arguments arguments) {
    std::list<tavroapi::VirtualPortRequest> requests = RequestsFor(wwn, arguments);
    if (DoOperation<OperationCode::DeleteVirtualPorts>(wwn, requests) == CallOutcome::Done) {
        console::PrintLine(L"Delete success for virtual port ");
    }
}

void ListVirtualPortTargets(const std::string& wwn, Arguments arguments) {
    tavroapi::VirtualPortQuery query = QueryFor(wwn, arguments);
    std::list<VirtualPortTargetRecord> targets;
    if (DoOperation<OperationCode::ListVirtualPortTargets>(wwn, query, targets) !=
        CallOutcome::Done) {
        return;
    }
    console::ShowEach(targets, [](const VirtualPortTargetRecord& target) {
        console::PrintLine(VirtualPortRule);
        PrintLines(target, TargetLines);
        console::PrintLine(Rule57);
    });
}

void ListVirtualPortLuns(const std::string& wwn, Arguments arguments) {
    tavroapi::VirtualPortQuery query = QueryFor(wwn, arguments);
    std::list<VirtualPortLunRecord> luns;
    if (DoOperation<OperationCode::ListVirtualPortLuns>(wwn, query, luns) != CallOutcome::Done) {
        return;
    }
    console::ShowEach(luns, [](const VirtualPortLunRecord& lun) {
        PrintLineOf(lun, {L"Target Port WWN:", &VirtualPortLunRecord::targetPortWwn});
        console::PrintLine(Rule57);
        PrintLines(lun, LunLines);
        console::PrintLine(Rule57);
    });
}

}  // namespace tavro
