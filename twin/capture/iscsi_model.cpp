#include <algorithm>
#include <limits>
#include <utility>

#include "simulator/host/told_hardware.h"
#include "simulator/model/from_records.h"
#include "simulator/model/numbers.h"
#include "twin/capture/function_model.h"
#include "twin/capture/walk.h"

namespace tavrohost {
namespace {

using tavroapi::OperationCode;
using tavrosim::IscsiPortal;
using tavrosim::IscsiSession;
using tavrosim::IscsiStorage;
namespace iscsi_port = tavroapi::iscsi_port;
namespace iscsi_session = tavroapi::iscsi_session;

tavrosim::FunctionHardware HardwareFrom(const tavroapi::IscsiPortRecord& record) {
    tavrosim::FunctionHardware hardware;
    StateText(hardware.driver, record.texts[iscsi_port::Driver]);
    StateText(hardware.driverVersion, record.texts[iscsi_port::DriverVersion]);
    StateText(hardware.serialNumber, record.texts[iscsi_port::SerialNumber]);
    StateText(hardware.firmwareVersion, record.texts[iscsi_port::FirmwareVersion]);
    StateText(hardware.linkStatus, record.texts[iscsi_port::LinkStatus]);
    return hardware;
}

void TellPortals(const Told& told, const std::string& key, IscsiStorage& storage) {
    std::set<std::pair<std::string, std::string>> known;
    for (const auto& portal :
         told.By<OperationCode::ListPortals>(key).value_or(std::list<tavroapi::PortalEntry>{})) {
        if (known.size() < MostTargets && known.emplace(portal.address, portal.port).second) {
            tavrosim::KnownPortal& added = storage.portals.emplace_back();
            added.address = portal.address;
            added.port = portal.port;
        }
    }
}

// A session that a target is told to have, but not what it is like.
IscsiSession UnreadSession(const tavroapi::TargetRecord& target) {
    IscsiSession session;
    session.target = target.name;
    session.portal = {target.portalAddress, target.portalPort};
    return session;
}

void TellTargets(const Told& told, const std::string& key, IscsiStorage& storage) {
    const std::set<std::string> withSession = [&storage] {
        std::set<std::string> names;
        for (const IscsiSession& session : storage.sessions) {
            names.insert(session.target);
        }
        return names;
    }();
    std::set<std::string> known;
    const auto add = [&](const tavroapi::TargetRecord& target) {
        const bool isNew =
            !target.name.empty() && known.size() < MostTargets && known.insert(target.name).second;
        if (isNew) {
            storage.targets.push_back(
                {target.name, {target.portalAddress, target.portalPort}, target.discovery});
        }
    };
    using Targets = std::list<tavroapi::TargetRecord>;
    for (const auto& target : told.By<OperationCode::ListTargets>(key).value_or(Targets{})) {
        add(target);
    }
    std::set<std::string> unread;
    for (const auto& target : told.By<OperationCode::ListActiveTargets>(key).value_or(Targets{})) {
        add(target);
        if (known.contains(target.name) && !withSession.contains(target.name) &&
            unread.insert(target.name).second) {
            storage.sessions.push_back(UnreadSession(target));
        }
    }
}

IscsiSession SessionFrom(const tavroapi::SessionRecord& record) {
    IscsiSession session;
    session.target = record.texts[iscsi_session::TargetName];
    session.portal = {record.texts[iscsi_session::TargetAddress],
                      record.texts[iscsi_session::TargetPort]};
    session.initiatorName = record.texts[iscsi_session::InitiatorName];
    session.authentication = record.texts[iscsi_session::Authentication];
    session.targetChapName = record.texts[iscsi_session::TargetChapName];
    session.initiatorChapName = record.texts[iscsi_session::InitiatorChapName];
    session.headerDigest = record.texts[iscsi_session::HeaderDigest];
    session.dataDigest = record.texts[iscsi_session::DataDigest];
    session.multipath = record.texts[iscsi_session::Multipath];
    session.immediateData = record.texts[iscsi_session::ImmediateData];
    return session;
}

void TellSessions(const Told& told, const std::string& key, IscsiStorage& storage) {
    std::set<std::pair<std::string, std::uint32_t>> known;
    for (const tavroapi::SessionRecord& record : told.Sessions(key)) {
        const auto id = tavrosim::WholeNumber<std::uint32_t>(record.texts[iscsi_session::Id]);
        const std::string& target = record.texts[iscsi_session::TargetName];
        if (id && !target.empty() && known.emplace(target, *id).second) {
            storage.sessions.push_back(SessionFrom(record));
            storage.sessions.back().id = *id;
            storage.lastSessionId = std::max(storage.lastSessionId, *id);
        }
    }
}

// Sessions without a number get those behind the last one, while there are any.
void NumberSessions(IscsiStorage& storage) {
    std::erase_if(storage.sessions, [&storage](IscsiSession& session) {
        if (session.id == 0) {
            if (storage.lastSessionId == std::numeric_limits<std::uint32_t>::max()) {
                return true;
            }
            session.id = ++storage.lastSessionId;
        }
        return false;
    });
}

}  // namespace

tavrosim::IscsiPart IscsiPartFrom(const Told& told, const std::string& key) {
    tavrosim::IscsiPart part;
    if (const auto port = told.By<OperationCode::ReadIscsiPort>(key)) {
        part.hardware = HardwareFrom(*port);
        part.tcpIp = tavrosim::TcpIpFrom(*port);
    }
    TellPortals(told, key, part.storage);
    TellSessions(told, key, part.storage);
    TellTargets(told, key, part.storage);
    NumberSessions(part.storage);
    if (const auto statistics = told.By<OperationCode::ReadIscsiStatistics>(key)) {
        part.storage.statistics = tavrosim::IscsiStatisticsFrom(*statistics);
    }
    if (const auto boot = told.By<OperationCode::ReadIscsiBoot>(key)) {
        part.boot = tavrosim::IscsiBootFrom(*boot);
    }
    return part;
}

void SettleIscsiSpeeds(const Told& told, tavrosim::Port& port) {
    const bool isChosen = std::ranges::any_of(port.functions, [](const auto& function) {
        if (!function.ethernet || !function.ethernet->settings) {
            return false;
        }
        const std::string& speed = function.ethernet->settings->speed;
        return speed != tavrosim::FastestSpeed && speed != tavroapi::SettingNotAvailable;
    });
    for (tavrosim::Function& function : port.functions) {
        auto& own = tavrosim::OwnHardware(function);
        if (isChosen || !function.iscsi || !own || own->linkStatus != tavrosim::LinkUp) {
            continue;
        }
        if (const auto record = told.By<OperationCode::ReadIscsiPort>(function.mac)) {
            StateText(own->maximumSpeed, record->texts[iscsi_port::LinkSpeed]);
        }
    }
}

}  // namespace tavrohost
