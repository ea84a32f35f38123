// The Fibre Channel targets that an FCoE port sees, its persistent bindings, and a target's LUNs.
#include "fcoe/targets.h"

#include <list>

#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rules.h"
#include "tavroapi/fcoe_records.h"

namespace tavro {

using tavroapi::OperationCode;

namespace {

constexpr std::size_t TargetNameArgument = 5;

constexpr TextRow TargetRowsBeforeAddress[] = {
    {MessageId::FcoeTargetNodeName, 3},
    {MessageId::FcoeTargetPortName, 2},
    {MessageId::FcoeTargetFcid, 1},
};

constexpr TextRow TargetRowsAfterAddress[] = {
    {MessageId::FcoeTargetClasses, 6}, {MessageId::FcoeTargetRole, 4},
    {MessageId::FcoeTargetTypes, 7},   {MessageId::FcoeTargetState, 5},
    {MessageId::ScsiBusNumber, 9},     {MessageId::ScsiTargetNumber, 10},
};

constexpr TextRow TargetInfoRows[] = {
    {MessageId::FcoeTargetPortName, 1}, {MessageId::FcoeTargetNodeName, 2},
    {MessageId::FcoeTargetTypes, 6},    {MessageId::FcoeTargetSymbolicName, 0},
    {MessageId::FcoeTargetClasses, 5},  {MessageId::FcoeTargetState, 4},
};

constexpr TextRow BindingRows[] = {
    {MessageId::BoundPortWwn, 5},     {MessageId::BoundNodeWwn, 6}, {MessageId::FcoeTargetFcid, 7},
    {MessageId::DeviceName, 1},       {MessageId::BindingType, 0},  {MessageId::ScsiBusNumber, 2},
    {MessageId::ScsiTargetNumber, 3}, {MessageId::BoundLun, 4},
};

constexpr TextRow LunRows[] = {
    {MessageId::FcoeLunItem, 0},     {MessageId::LunVendor, 1},      {MessageId::LunProduct, 2},
    {MessageId::LunRevision, 3},     {MessageId::LunCapacity, 4},    {MessageId::LunBlockSize, 5},
    {MessageId::ConnectionState, 7}, {MessageId::LunDeviceType, 10}, {MessageId::DeviceName, 9},
    {MessageId::LunScsiUnit, 8},     {MessageId::LunVolumes, 6},
};

// The target's bus and number on the operating system's SCSI bus.
std::string ScsiAddress(const tavroapi::FcoeTargetRecord& target) {
    return target.texts[9] + "," + target.texts[10];
}

}  // namespace

void ListFcoeTargets(const std::string& wwn) {
    std::list<tavroapi::FcoeTargetRecord> targets;
    if (DoOperation<OperationCode::ListFcoeTargets>(wwn, targets) != CallOutcome::Done) {
        ShowFailure(MessageId::FcoeTargetListFailed);
        return;
    }
    ShowMessage(MessageId::FcoeTargetListTitle, wwn, Layout::Title);
    console::ShowEach(targets, [](const tavroapi::FcoeTargetRecord& target) {
        ShowRows(target, TargetRowsBeforeAddress);
        ShowMessage(MessageId::FcoeTargetBusAndNumber, ScsiAddress(target), Layout::Row);
        ShowRows(target, TargetRowsAfterAddress);
        console::PrintLine(TabRule65);
    });
    console::PrintLine(Rule78);
}

void ShowFcoeTarget(const std::string& wwn, Arguments arguments) {
    tavroapi::FcoeTargetInfoRecord target;
    if (DoOperation<OperationCode::ReadFcoeTarget>(wwn, ArgumentAt(arguments, TargetNameArgument),
                                                   target) != CallOutcome::Done) {
        ShowFailure(MessageId::FcoeTargetInfoFailed);
        return;
    }
    ShowMessage(MessageId::FcoeTargetInfoTitle, target.texts[1], Layout::Title);
    ShowRows(target, TargetInfoRows);
    ShowClosingRules();
}

void ListFcoeBindings(const std::string& wwn) {
    std::list<tavroapi::FcoeBindingRecord> bindings;
    if (DoOperation<OperationCode::ListFcoeBindings>(wwn, bindings) != CallOutcome::Done) {
        ShowFailure(MessageId::FcoeBindingsFailed);
        return;
    }
    if (bindings.empty()) {
        ShowFailure(MessageId::NoFcoeBinding);
        return;
    }
    console::ShowEach(bindings, [](const tavroapi::FcoeBindingRecord& binding) {
        ShowMessage(MessageId::FcoeBindingTitle);
        ShowRows(binding, BindingRows);
        ShowClosingRules();
    });
}

void ListFcoeLuns(const std::string& wwn, Arguments arguments) {
    std::list<tavroapi::FcoeLunRecord> luns;
    if (DoOperation<OperationCode::ListFcoeLuns>(wwn, ArgumentAt(arguments, TargetNameArgument),
                                                 luns) != CallOutcome::Done) {
        ShowFailure(MessageId::FcoeLunListFailed);
        return;
    }
    ShowMessage(MessageId::FcoeLunListTitle, wwn, Layout::Title);
    console::ShowEach(luns, [](const tavroapi::FcoeLunRecord& lun) {
        ShowRows(lun, LunRows);
        console::PrintLine(TabRule65);
    });
    console::PrintLine(Rule78);
}

}  // namespace tavro
