// The Fibre Channel targets that an FCoE port sees, its persistent bindings, and a target's LUNs.
#include "fcoe/commands.h"

#include <list>

#include "cli/invocation.h"
#include "console/console.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rule_lines.h"
#include "tavroapi/fcoe_records.h"

namespace tavro {

using tavroapi::OperationCode;

namespace {

namespace fcoe_target = tavroapi::fcoe_target;
namespace fcoe_target_info = tavroapi::fcoe_target_info;
namespace fcoe_binding = tavroapi::fcoe_binding;
namespace fcoe_lun = tavroapi::fcoe_lun;

constexpr TextRow TargetRowsBeforeAddress[] = {
    {MessageId::FcoeTargetNodeName, fcoe_target::NodeWwn},
    {MessageId::FcoeTargetPortName, fcoe_target::PortWwn},
    {MessageId::FcoeTargetFcid, fcoe_target::Fcid},
};

constexpr TextRow TargetRowsAfterAddress[] = {
    {MessageId::FcoeTargetClasses, fcoe_target::SupportedClasses},
    {MessageId::FcoeTargetRole, fcoe_target::Role},
    {MessageId::FcoeTargetTypes, fcoe_target::SupportedTypes},
    {MessageId::FcoeTargetState, fcoe_target::State},
    {MessageId::ScsiBusNumber, fcoe_target::ScsiBus},
    {MessageId::ScsiTargetNumber, fcoe_target::ScsiTarget},
};

constexpr TextRow TargetInfoRows[] = {
    {MessageId::FcoeTargetPortName, fcoe_target_info::PortWwn},
    {MessageId::FcoeTargetNodeName, fcoe_target_info::NodeWwn},
    {MessageId::FcoeTargetTypes, fcoe_target_info::SupportedTypes},
    {MessageId::FcoeTargetSymbolicName, fcoe_target_info::SymbolicName},
    {MessageId::FcoeTargetClasses, fcoe_target_info::SupportedClasses},
    {MessageId::FcoeTargetState, fcoe_target_info::State},
};

constexpr TextRow BindingRows[] = {
    {MessageId::BoundPortWwn, fcoe_binding::PortWwn},
    {MessageId::BoundNodeWwn, fcoe_binding::NodeWwn},
    {MessageId::FcoeTargetFcid, fcoe_binding::Fcid},
    {MessageId::DeviceName, fcoe_binding::DeviceName},
    {MessageId::BindingType, fcoe_binding::Type},
    {MessageId::ScsiBusNumber, fcoe_binding::ScsiBus},
    {MessageId::ScsiTargetNumber, fcoe_binding::ScsiTarget},
    {MessageId::BoundLun, fcoe_binding::Lun},
};

constexpr TextRow LunRows[] = {
    {MessageId::FcoeLunItem, fcoe_lun::Item},
    {MessageId::LunVendor, fcoe_lun::Vendor},
    {MessageId::LunProduct, fcoe_lun::Product},
    {MessageId::LunRevision, fcoe_lun::Revision},
    {MessageId::LunCapacity, fcoe_lun::Capacity},
    {MessageId::LunBlockSize, fcoe_lun::BlockSize},
    {MessageId::ConnectionState, fcoe_lun::ConnectionState},
    {MessageId::LunDeviceType, fcoe_lun::DeviceType},
    {MessageId::DeviceName, fcoe_lun::DeviceName},
    {MessageId::LunScsiUnit, fcoe_lun::ScsiUnit},
    {MessageId::LunVolumes, fcoe_lun::Volumes},
};

// The target's bus and number on the operating system's SCSI bus.
std::string ScsiAddress(const tavroapi::FcoeTargetRecord& target) {
    return target.texts[fcoe_target::ScsiBus] + "," + target.texts[fcoe_target::ScsiTarget];
}

// Lists the targets that an FCoE port sees.
void ListFcoeTargets(const Invocation& invocation) {
    std::list<tavroapi::FcoeTargetRecord> targets;
    if (DoOperation<OperationCode::ListFcoeTargets>(invocation.port, targets) !=
        CallOutcome::Done) {
        ShowFailure(MessageId::FcoeTargetListFailed);
        return;
    }
    ShowMessage(MessageId::FcoeTargetListTitle, invocation.port, Layout::Title);
    console::ShowEach(targets, [](const tavroapi::FcoeTargetRecord& target) {
        ShowRows(target, TargetRowsBeforeAddress);
        ShowMessage(MessageId::FcoeTargetBusAndNumber, ScsiAddress(target), Layout::Row);
        ShowRows(target, TargetRowsAfterAddress);
        console::PrintLine(TabRule65);
    });
    console::PrintLine(Rule78);
}

// Shows one target.
void ShowFcoeTarget(const Invocation& invocation) {
    tavroapi::FcoeTargetInfoRecord target;
    if (DoOperation<OperationCode::ReadFcoeTarget>(
            invocation.port, invocation.Text(operand::FcoeTarget), target) != CallOutcome::Done) {
        ShowFailure(MessageId::FcoeTargetInfoFailed);
        return;
    }
    ShowMessage(MessageId::FcoeTargetInfoTitle, target.texts[fcoe_target_info::PortWwn],
                Layout::Title);
    ShowRows(target, TargetInfoRows);
    ShowClosingRules();
}

// Lists the persistent bindings of an FCoE port; that there are none is reported like a failure.
void ListFcoeBindings(const Invocation& invocation) {
    std::list<tavroapi::FcoeBindingRecord> bindings;
    if (DoOperation<OperationCode::ListFcoeBindings>(invocation.port, bindings) !=
        CallOutcome::Done) {
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

// Lists the LUNs of one target.
void ListFcoeLuns(const Invocation& invocation) {
    std::list<tavroapi::FcoeLunRecord> luns;
    if (DoOperation<OperationCode::ListFcoeLuns>(
            invocation.port, invocation.Text(operand::FcoeTarget), luns) != CallOutcome::Done) {
        ShowFailure(MessageId::FcoeLunListFailed);
        return;
    }
    ShowMessage(MessageId::FcoeLunListTitle, invocation.port, Layout::Title);
    console::ShowEach(luns, [](const tavroapi::FcoeLunRecord& lun) {
        ShowRows(lun, LunRows);
        console::PrintLine(TabRule65);
    });
    console::PrintLine(Rule78);
}

}  // namespace

std::span<const Command> FcoeTargetCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{32},
         .form = {"-fcoe", operand::PortWwn, "-target", "-listactive"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ListFcoeTargets,
         .handler = ListFcoeTargets},
        {.code = CommandCode{33},
         .form = {"-fcoe", operand::PortWwn, "-target", "-getinfo", operand::FcoeTarget},
         .tooFew = CommandCode::TooFewArguments,
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadFcoeTarget,
         .handler = ShowFcoeTarget},
        {.code = CommandCode{34},
         .form = {"-fcoe", operand::PortWwn, "-target", "-pbindinfo"},
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ListFcoeBindings,
         .handler = ListFcoeBindings},
        {.code = CommandCode{37},
         .form = {"-fcoe", operand::PortWwn, "-target", "-lunlist", operand::FcoeTarget},
         .tooFew = CommandCode::TooFewArguments,
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ListFcoeLuns,
         .handler = ListFcoeLuns},
    };
    return Rows;
}

}  // namespace tavro
