#include "iscsi/sessions.h"

#include <iterator>
#include <tuple>

#include "cli/prompts.h"
#include "cli/validation.h"
#include "console/console.h"
#include "iscsi/phrases.h"
#include "mgmt/operation.h"
#include "mgmt/rows.h"
#include "mgmt/rules.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavro {

using tavroapi::LunRecord;
using tavroapi::OperationCode;

namespace {

constexpr std::size_t NamePosition = 5;
constexpr std::size_t SessionIdsPosition = 6;

// Stands where no session number is given.
constexpr const char* NoSessionId = "0";

constexpr TextRow SessionRows[] = {
    {MessageId::SessionTargetName, 0},
    {MessageId::SessionNumber, 1},
    {MessageId::SessionStatus, 2},
    {MessageId::SessionType, 3},
    {MessageId::SessionInitiatorPart, 4},
    {MessageId::SessionTargetHandle, 5},
    {MessageId::SessionTargetAlias, 6},
    {MessageId::SessionPortalGroup, 7},
    {MessageId::SessionTargetAddress, 8},
    {MessageId::SessionTargetPort, 9},
    {MessageId::SessionInitiatorName, 10},
    {MessageId::SessionInitiatorAddress, 11},
    {MessageId::SessionInitiatorPort, 12},
    {MessageId::SessionConnectionCount, 13},
    {MessageId::SessionConnectionId, 14},
    {MessageId::SessionConnectionStatus, 15},
    {MessageId::SessionAuthentication, 16},
    {MessageId::SessionTargetChapName, 17},
    {MessageId::SessionInitiatorChapName, 18},
    {MessageId::SessionHeaderDigest, 19},
    {MessageId::SessionDataDigest, 20},
    {MessageId::SessionMultipath, 21},
    {MessageId::SessionMaxConnections, 22},
    {MessageId::SessionInitialR2T, 23},
    {MessageId::SessionImmediateData, 24},
    {MessageId::SessionMaxBurstLength, 25},
    {MessageId::SessionFirstBurstLength, 26},
    {MessageId::SessionTimeToWait, 27},
    {MessageId::SessionTimeToRetain, 28},
    {MessageId::SessionMaxOutstandingR2T, 29},
    {MessageId::SessionDataPduInOrder, 30},
    {MessageId::SessionDataSequenceInOrder, 31},
    {MessageId::SessionErrorRecoveryLevel, 32},
    {MessageId::SessionMaxReceiveLength, 33},
    {MessageId::SessionMaxTransmitLength, 34},
    {MessageId::SessionInitiatorMarker, 35},
    {MessageId::SessionTargetMarker, 36},
    {MessageId::SessionVlanId, 37},
    {MessageId::SessionMaxFrameSize, 38},
    {MessageId::SessionLunCount, 39},
    {MessageId::SessionDiscovery, 40},
};
static_assert(std::size(SessionRows) ==
              std::tuple_size_v<decltype(tavroapi::SessionRecord::texts)>);

constexpr std::size_t LunTitlePosition = 0;
constexpr TextRow LunRows[] = {
    {MessageId::LunBlockSize, 4},    {MessageId::LunCapacity, 3},
    {MessageId::LunVendor, 1},       {MessageId::IscsiLunProduct, 2},
    {MessageId::ConnectionState, 6}, {MessageId::IscsiLunSerialNumber, 5},
};

void ShowLuns(const std::list<LunRecord>& luns) {
    ShowMessage(MessageId::IscsiLunListTitle);
    if (luns.empty()) {
        console::PrintLine(Rule78);
        ShowNotice(MessageId::NoIscsiLuns);
    }
    console::ShowEach(luns, [](const LunRecord& lun) {
        ShowMessage(MessageId::IscsiLunTitle, lun.texts[LunTitlePosition], Layout::Title);
        ShowRows(lun, LunRows);
        console::EndLine();
    });
    console::PrintLine(Rule78);
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

void ShowSession(const std::string& mac, Arguments arguments) {
    tavroapi::SessionRecord session;
    session.texts[tavroapi::SessionTargetNamePosition] = ArgumentAt(arguments, NamePosition);
    session.texts[tavroapi::SessionIdPosition] =
        arguments.size() > SessionIdsPosition ? arguments[SessionIdsPosition] : NoSessionId;
    if (DoOperation<OperationCode::ReadSession>(mac, session, session) != CallOutcome::Done) {
        console::PrintNarrowLine("status - " + NumberToText(LastStatus));
        ShowFailure(MessageId::SessionInfoFailed);
        return;
    }
    ShowMessage(MessageId::SessionInfoTitle, NoValue, Layout::Title);
    ShowRows(session, SessionRows);
    ShowClosingRules();
}

void LogOutOfTarget(const std::string& mac, Arguments arguments) {
    tavroapi::LogoutRecord logout;
    logout.targetName = ArgumentAt(arguments, NamePosition);
    if (arguments.size() > SessionIdsPosition) {
        const std::string ids = arguments[SessionIdsPosition];
        if (!IsNumberList(ids)) {
            ShowMessage(MessageId::InvalidSessionIds, ids);
            return;
        }
        logout.sessionIds = SplitSessionIds(ids);
    } else {
        logout.sessionIds = {NoSessionId};
    }

    ShowPleaseWait();
    if (DoOperation<OperationCode::LogOutOfTarget>(mac, logout) == CallOutcome::Done) {
        ShowMessage(MessageId::LoggedOut);
    } else {
        ShowLastError();
    }
}

void ListLuns(const std::string& mac, Arguments arguments) {
    ShowPleaseWait();
    const std::string name = ArgumentAt(arguments, NamePosition);
    std::list<LunRecord> luns;
    if (DoOperation<OperationCode::ListLuns>(mac, name, luns) != CallOutcome::Done) {
        ShowFailure(MessageId::IscsiLunListFailed);
        return;
    }
    ShowLuns(luns);
}

}  // namespace tavro
