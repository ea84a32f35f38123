// The export of an Ethernet adapter's settings.
#include "cli/invocation.h"
#include "ethernet/commands.h"
#include "mgmt/operation.h"
#include "tavroapi/ethernet_records.h"

namespace tavro {

namespace {

// Has the library export the adapter's settings. Never prints anything.
void GetEthernetXml(const Invocation& invocation) {
    tavroapi::AdapterSettings settings;
    DoOperation<tavroapi::OperationCode::ExportAdapterSettings>(invocation.port, settings);
}

}  // namespace

std::span<const Command> XmlExportCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{62},
         .form = {"-ethernet", operand::PortMac, "-getxml"},
         .access = AccessClass::Runs,
         .decidedBy = tavroapi::OperationCode::ExportAdapterSettings,
         .handler = GetEthernetXml},
    };
    return Rows;
}

}  // namespace tavro
