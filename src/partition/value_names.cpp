#include "partition/value_names.h"

#include <algorithm>
#include <iterator>

#include "partition/ports.h"

namespace tavro {

namespace {

constexpr FunctionPersonality Personalities[] = {
    {.menuKey = "1", .code = "3", .name = "Ethernet", .companion = "16"},
    {.menuKey = "2", .code = "5", .name = "iSCSI", .companion = "0"},
    {.menuKey = "3", .code = "9", .name = "FCoE", .companion = "0"},
};

struct FlowControl {
    std::string_view menuKey;
    std::string_view code;
    std::string_view name;
};

constexpr FlowControl FlowControls[] = {
    {.menuKey = "1", .code = "0", .name = "Auto"},
    {.menuKey = "2", .code = "1", .name = "Tx Enabled"},
    {.menuKey = "3", .code = "2", .name = "Rx Enabled"},
    {.menuKey = "4", .code = "3", .name = "Tx/Rx Enabled"},
    {.menuKey = "5", .code = "4", .name = "Disabled"},
};

// The row whose `column` is the text; null when there is none.
template <class TableRow, std::size_t Count>
const TableRow* FindRow(const TableRow (&table)[Count], std::string_view TableRow::*column,
                        std::string_view text) {
    const auto found = std::ranges::find(table, text, column);
    return found == std::end(table) ? nullptr : &*found;
}

template <class TableRow, std::size_t Count>
void CodeToName(const TableRow (&table)[Count], std::string& text) {
    if (const TableRow* const row = FindRow(table, &TableRow::code, text)) {
        text = row->name;
    }
}

}  // namespace

void GivePersonality(tavroapi::PartitionFunction& function,
                     const FunctionPersonality& personality) {
    function.personality = personality.code;
    function.companion = personality.companion;
}

const FunctionPersonality& EthernetPersonality() {
    return Personalities[0];
}

const FunctionPersonality* FindPersonality(std::string_view menuKey) {
    return FindRow(Personalities, &FunctionPersonality::menuKey, menuKey);
}

std::optional<std::string> FlowControlCode(std::string_view menuKey) {
    const FlowControl* const row = FindRow(FlowControls, &FlowControl::menuKey, menuKey);
    return row == nullptr ? std::nullopt : std::optional<std::string>(row->code);
}

void ConvertPersonality(tavroapi::PartitionConfig& config) {
    for (tavroapi::PartitionFunction& function : config.functions) {
        CodeToName(Personalities, function.personality);
    }
}

void ConvertFlowControl(tavroapi::PartitionConfig& config, std::int32_t portCount) {
    for (std::size_t port = 0; port < PortsWithFlowControl(portCount); ++port) {
        CodeToName(FlowControls, config.flowControl[port]);
    }
}

}  // namespace tavro
