// The information about an Ethernet port.
#include "ethernet/port_info.h"

#include "console/console.h"
#include "ethernet/closing_rule.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rules.h"
#include "tavroapi/ethernet_records.h"

namespace tavro {

using tavroapi::EthernetPortInfo;
using tavroapi::OperationCode;

namespace {

constexpr TextRow Rows[] = {
    {MessageId::EthernetPortText7, 7},   {MessageId::EthernetPortText6, 6},
    {MessageId::AssignedAddress, 29},    {MessageId::EthernetPortText9, 9},
    {MessageId::EthernetPortText10, 10}, {MessageId::EthernetPortText12, 12},
    {MessageId::EthernetPortText32, 32}, {MessageId::EthernetPortText0, 0},
    {MessageId::EthernetPortText1, 1},   {MessageId::EthernetPortText2, 2},
    {MessageId::EthernetPortText31, 31}, {MessageId::EthernetPortText13, 13},
    {MessageId::EthernetPortText22, 22}, {MessageId::EthernetPortText16, 16},
    {MessageId::EthernetPortText15, 15}, {MessageId::EthernetPortText14, 14},
    {MessageId::EthernetPortText26, 26}, {MessageId::WideRowLabel, EthernetPortInfo::WidePosition},
    {MessageId::EthernetPortText23, 23},
};

void ShowRow(const EthernetPortInfo& info, const TextRow& row) {
    if (row.position == EthernetPortInfo::WidePosition) {
        ShowWideRow(info.wideText27, "");
        return;
    }
    const std::string& text =
        row.position < EthernetPortInfo::WidePosition
            ? info.texts0To26.at(row.position)
            : info.texts28To32.at(row.position - EthernetPortInfo::WidePosition - 1);
    ShowMessage(row.label, text, Layout::Row);
}

}  // namespace

void ShowEthernetPortInfo(const std::string& mac) {
    EthernetPortInfo info;
    switch (DoOperation<OperationCode::ReadEthernetPort>(mac, info)) {
        case CallOutcome::NotResolved:
            return;
        case CallOutcome::Failed:
            ShowFailure(MessageId::EthernetPortFailed);
            return;
        case CallOutcome::Done:
            break;
    }
    console::PrintNarrowLine("");
    ShowMessage(MessageId::EthernetPortTitle, "", Layout::Title);
    console::PrintNarrowLine("");
    for (const TextRow& row : Rows) {
        ShowRow(info, row);
    }
    PrintClosingRule(Rule78);
}

}  // namespace tavro
