// The sessions with an iSCSI target and the LUNs behind it.
#include "iscsi/sessions.h"

#include <iterator>
#include <tuple>

#include "cli/invocation.h"
#include "cli/validation.h"
#include "console/console.h"
#include "iscsi/commands.h"
#include "iscsi/phrases.h"
#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rule_lines.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavro {

using tavroapi::LunRecord;
using tavroapi::OperationCode;

namespace {

namespace iscsi_session = tavroapi::iscsi_session;
namespace iscsi_lun = tavroapi::iscsi_lun;

// Stands where no session number is given.
constexpr const char* NoSessionId = "0";

constexpr TextRow SessionRows[] = {
    {MessageId::SessionTargetName, iscsi_session::TargetName},
    {MessageId::SessionNumber, iscsi_session::Id},
    {MessageId::SessionStatus, iscsi_session::Status},
    {MessageId::SessionType, iscsi_session::Type},
    {MessageId::SessionInitiatorPart, iscsi_session::InitiatorPart},
    {MessageId::SessionTargetHandle, iscsi_session::TargetHandle},
    {MessageId::SessionTargetAlias, iscsi_session::TargetAlias},
    {MessageId::SessionPortalGroup, iscsi_session::PortalGroup},
    {MessageId::SessionTargetAddress, iscsi_session::TargetAddress},
    {MessageId::SessionTargetPort, iscsi_session::TargetPort},
    {MessageId::SessionInitiatorName, iscsi_session::InitiatorName},
    {MessageId::SessionInitiatorAddress, iscsi_session::InitiatorAddress},
    {MessageId::SessionInitiatorPort, iscsi_session::InitiatorPort},
    {MessageId::SessionConnectionCount, iscsi_session::ConnectionCount},
    {MessageId::SessionConnectionId, iscsi_session::ConnectionId},
    {MessageId::SessionConnectionStatus, iscsi_session::ConnectionStatus},
    {MessageId::SessionAuthentication, iscsi_session::Authentication},
    {MessageId::SessionTargetChapName, iscsi_session::TargetChapName},
    {MessageId::SessionInitiatorChapName, iscsi_session::InitiatorChapName},
    {MessageId::SessionHeaderDigest, iscsi_session::HeaderDigest},
    {MessageId::SessionDataDigest, iscsi_session::DataDigest},
    {MessageId::SessionMultipath, iscsi_session::Multipath},
    {MessageId::SessionMaxConnections, iscsi_session::MaxConnections},
    {MessageId::SessionInitialR2T, iscsi_session::InitialR2T},
    {MessageId::SessionImmediateData, iscsi_session::ImmediateData},
    {MessageId::SessionMaxBurstLength, iscsi_session::MaxBurstLength},
    {MessageId::SessionFirstBurstLength, iscsi_session::FirstBurstLength},
    {MessageId::SessionTimeToWait, iscsi_session::TimeToWait},
    {MessageId::SessionTimeToRetain, iscsi_session::TimeToRetain},
    {MessageId::SessionMaxOutstandingR2T, iscsi_session::MaxOutstandingR2T},
    {MessageId::SessionDataPduInOrder, iscsi_session::DataPduInOrder},
    {MessageId::SessionDataSequenceInOrder, iscsi_session::DataSequenceInOrder},
    {MessageId::SessionErrorRecoveryLevel, iscsi_session::ErrorRecoveryLevel},
    {MessageId::SessionMaxReceiveLength, iscsi_session::MaxReceiveLength},
    {MessageId::SessionMaxTransmitLength, iscsi_session::MaxTransmitLength},
    {MessageId::SessionInitiatorMarker, iscsi_session::InitiatorMarker},
    {MessageId::SessionTargetMarker, iscsi_session::TargetMarker},
    {MessageId::SessionVlanId, iscsi_session::VlanId},
    {MessageId::SessionMaxFrameSize, iscsi_session::MaxFrameSize},
    {MessageId::SessionLunCount, iscsi_session::LunCount},
    {MessageId::SessionDiscovery, iscsi_session::Discovery},
};
static_assert(std::size(SessionRows) ==
              std::tuple_size_v<decltype(tavroapi::SessionRecord::texts)>);

constexpr TextRow LunRows[] = {
    {MessageId::LunBlockSize, iscsi_lun::BlockSize},
    {MessageId::LunCapacity, iscsi_lun::Capacity},
    {MessageId::LunVendor, iscsi_lun::Vendor},
    {MessageId::IscsiLunProduct, iscsi_lun::Product},
    {MessageId::ConnectionState, iscsi_lun::ConnectionState},
    {MessageId::IscsiLunSerialNumber, iscsi_lun::SerialNumber},
};

void ShowLuns(const std::list<LunRecord>& luns) {
    ShowMessage(MessageId::IscsiLunListTitle);
    if (luns.empty()) {
        console::PrintLine(Rule78);
        ShowNotice(MessageId::NoIscsiLuns);
    }
    console::ShowEach(luns, [](const LunRecord& lun) {
        ShowMessage(MessageId::IscsiLunTitle, lun.texts[iscsi_lun::Number], Layout::Title);
        ShowRows(lun, LunRows);
        console::EndLine();
    });
    console::PrintLine(Rule78);
}

// Shows one session, number 0 when none is given.
void ShowSession(const Invocation& invocation) {
    tavroapi::SessionRecord session;
    session.texts[iscsi_session::TargetName] = invocation.Text(operand::TargetName);
    session.texts[iscsi_session::Id] =
        invocation.Has(operand::SessionId) ? invocation.Text(operand::SessionId) : NoSessionId;
    if (DoOperation<OperationCode::ReadSession>(invocation.port, session, session) !=
        CallOutcome::Done) {
        console::PrintNarrowLine("status - " + NumberToText(LastStatus));
        ShowFailure(MessageId::SessionInfoFailed);
        return;
    }
    ShowMessage(MessageId::SessionInfoTitle, NoValue, Layout::Title);
    ShowRows(session, SessionRows);
    ShowClosingRules();
}

// Ends sessions, number 0 when none is given.
void LogOutOfTarget(const Invocation& invocation) {
    tavroapi::LogoutRecord logout;
    logout.targetName = invocation.Text(operand::TargetName);
    if (invocation.Has(operand::SessionIds)) {
        const std::string ids = invocation.Text(operand::SessionIds);
        if (!IsNumberList(ids)) {
            ShowMessage(MessageId::InvalidSessionIds, ids);
            return;
        }
        logout.sessionIds = SplitSessionIds(ids);
    } else {
        logout.sessionIds = {NoSessionId};
    }

    ShowPleaseWait();
    if (DoOperation<OperationCode::LogOutOfTarget>(invocation.port, logout) == CallOutcome::Done) {
        ShowMessage(MessageId::LoggedOut);
    } else {
        ShowLastError();
    }
}

// Lists the LUNs of a target.
void ListLuns(const Invocation& invocation) {
    ShowPleaseWait();
    const std::string name = invocation.Text(operand::TargetName);
    std::list<LunRecord> luns;
    if (DoOperation<OperationCode::ListLuns>(invocation.port, name, luns) != CallOutcome::Done) {
        ShowFailure(MessageId::IscsiLunListFailed);
        return;
    }
    ShowLuns(luns);
}

}  // namespace

std::list<std::string> SplitSessionIds(std::string_view text) {
    std::list<std::string> ids;
    for (std::size_t comma = text.find(','); comma != 0 && comma != std::string_view::npos;
         comma = text.find(',')) {
        ids.emplace_back(text.substr(0, comma));
        text.remove_prefix(comma + 1);
    }
    if (!text.empty()) {
        ids.emplace_back(text);
    }
    return ids;
}

std::span<const Command> SessionCommands() {
    static constexpr Command Rows[] = {
        {.code = CommandCode{18},
         .form = {"-iscsi", operand::PortMac, "-target", "-sessioninfo", operand::TargetName,
                  Optional(operand::SessionId)},
         .tooFew = CommandCode::TooFewArguments,
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ReadSession,
         .handler = ShowSession},
        {.code = CommandCode{20},
         .form = {"-iscsi", operand::PortMac, "-target", "-logout", operand::TargetName,
                  Optional(operand::SessionIds)},
         .tooFew = CommandCode::TooFewArguments,
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::LogOutOfTarget,
         .handler = LogOutOfTarget},
        {.code = CommandCode{21},
         .form = {"-iscsi", operand::PortMac, "-target", "-lunlist", operand::TargetName},
         .tooFew = CommandCode::TooFewArguments,
         .access = AccessClass::Runs,
         .decidedBy = OperationCode::ListLuns,
         .handler = ListLuns},
    };
    return Rows;
}

}  // namespace tavro
