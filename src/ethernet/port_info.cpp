// The information about an Ethernet port.
#include "ethernet/commands.h"

#include "cli/invocation.h"
#include "console/console.h"
#include "ethernet/closing_rule.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rule_lines.h"
#include "tavroapi/ethernet_records.h"

namespace tavro {

using tavroapi::EthernetPortInfo;
using tavroapi::OperationCode;

namespace {

namespace ethernet_port = tavroapi::ethernet_port;

constexpr TextRow Rows[] = {
    {MessageId::EthernetPortPermanentMac, ethernet_port::PermanentMac},
    {MessageId::EthernetPortCurrentMac, ethernet_port::CurrentMac},
    {MessageId::AssignedAddress, ethernet_port::LocallyAdministeredAddress},
    {MessageId::EthernetPortLinkState, ethernet_port::LinkState},
    {MessageId::EthernetPortLinkSpeed, ethernet_port::LinkSpeed},
    {MessageId::EthernetPortMaximumLinkSpeed, ethernet_port::MaximumLinkSpeed},
    {MessageId::EthernetPortFlowControl, ethernet_port::FlowControl},
    {MessageId::EthernetPortModelName, ethernet_port::ModelName},
    {MessageId::EthernetPortSerialNumber, ethernet_port::SerialNumber},
    {MessageId::EthernetPortPartNumber, ethernet_port::PartNumber},
    {MessageId::EthernetPortHardwareRevision, ethernet_port::HardwareRevision},
    {MessageId::EthernetPortDriver, ethernet_port::Driver},
    {MessageId::EthernetPortDriverVersion, ethernet_port::DriverVersion},
    {MessageId::EthernetPortFirmwareVersion, ethernet_port::FirmwareVersion},
    {MessageId::EthernetPortBootCodeVersion, ethernet_port::BootCodeVersion},
    {MessageId::EthernetPortOptionRomVersion, ethernet_port::OptionRomVersion},
    {MessageId::EthernetPortPciLocation, ethernet_port::PciLocation},
    {MessageId::WideRowLabel, ethernet_port::DeviceName},
    {MessageId::EthernetPortLargestFrame, ethernet_port::LargestFrame},
};

void ShowRow(EthernetPortInfo& info, const TextRow& row) {
    if (row.position == ethernet_port::DeviceName) {
        ShowWideRow(info.wideText27, "");
    } else {
        ShowMessage(row.label, info.NarrowText(row.position), Layout::Row);
    }
}

// Shows what the library tells about an Ethernet port. Without the library's entry point nothing is
// shown.
void ShowEthernetPortInfo(const Invocation& invocation) {
    EthernetPortInfo info;
    switch (DoOperation<OperationCode::ReadEthernetPort>(invocation.port, info)) {
        case CallOutcome::NotResolved:
            return;
        case CallOutcome::Failed:
            ShowFailure(MessageId::EthernetPortFailed);
            return;
        case CallOutcome::Done:
            break;
    }
    console::EndLine();
    ShowMessage(MessageId::EthernetPortTitle, "", Layout::Title);
    console::EndLine();
    for (const TextRow& row : Rows) {
        ShowRow(info, row);
    }
    PrintClosingRule(Rule78);
}

}  // namespace

std::span<const Command> EthernetPortCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{55},
         .form = {"-ethernet", operand::PortMac, "-portinfo"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadEthernetPort,
         .handler = ShowEthernetPortInfo},
    };
    return Rows;
}

}  // namespace tavro
