#include "library/text/identifier.h"
#include "simulator/host/lookup.h"
#include "simulator/model/from_records.h"
#include "simulator/model/numbers.h"
#include "twin/capture/function_model.h"
#include "twin/capture/walk.h"

namespace tavrohost {
namespace {

using tavroapi::OperationCode;
using tavrolib::IsFcid;
using tavrosim::NormalIdentifier;
namespace fcoe_port = tavroapi::fcoe_port;
namespace fcoe_binding = tavroapi::fcoe_binding;

tavrosim::FunctionHardware HardwareFrom(const tavroapi::FcoePortRecord& record) {
    tavrosim::FunctionHardware hardware;
    StateText(hardware.driver, record.texts[fcoe_port::Driver]);
    StateText(hardware.driverVersion, record.texts[fcoe_port::DriverVersion]);
    StateText(hardware.serialNumber, record.texts[fcoe_port::SerialNumber]);
    StateText(hardware.hardwareRevision, record.texts[fcoe_port::HardwareVersion]);
    StateText(hardware.firmwareVersion, record.texts[fcoe_port::FirmwareVersion]);
    StateText(hardware.optionRomVersion, record.texts[fcoe_port::OptionRomVersion]);
    StateText(hardware.linkStatus, record.texts[fcoe_port::LinkState]);
    StateText(hardware.maximumSpeed, record.texts[fcoe_port::SupportedSpeeds]);
    StateText(hardware.deviceName, record.texts[fcoe_port::DeviceName]);
    return hardware;
}

void TellBindings(const Told& told, const std::string& key, tavrosim::FcoePart& part) {
    for (const auto& record : told.By<OperationCode::ListFcoeBindings>(key).value_or(
             std::list<tavroapi::FcoeBindingRecord>{})) {
        const auto number = [&record](std::size_t position) {
            return tavrosim::WholeNumber<std::uint32_t>(record.texts[position]);
        };
        const auto bus = number(fcoe_binding::ScsiBus);
        const auto target = number(fcoe_binding::ScsiTarget);
        if (bus && target && IsWwn(record.texts[fcoe_binding::PortWwn]) &&
            part.bindings.size() < MostTargets) {
            part.bindings.push_back({record.texts[fcoe_binding::PortWwn], *bus, *target,
                                     number(fcoe_binding::Lun).value_or(0),
                                     record.texts[fcoe_binding::Type]});
        }
    }
}

void TellVirtualPorts(const Told& told, const std::string& key, std::set<std::string>& identifiers,
                      tavrosim::FcoePart& part) {
    for (const auto& record : told.By<OperationCode::ListVirtualPorts>(key).value_or(
             std::list<tavroapi::VirtualPortRecord>{})) {
        if (IsWwn(record.portWwn) && part.virtualPorts.size() < MostTargets &&
            identifiers.insert(NormalIdentifier(record.portWwn)).second) {
            part.virtualPorts.push_back({record.portWwn,
                                         IsWwn(record.nodeWwn) ? record.nodeWwn : part.nodeWwn,
                                         IsFcid(record.fcid) ? record.fcid : part.fcid});
        }
    }
}

void TellDcb(const Told& told, const std::string& key, tavrosim::FcoePart& part) {
    if (const auto info = told.By<OperationCode::ReadDcbInfo>(key)) {
        part.dcb = tavrosim::LocalDcbFrom(*info);
    }
    if (const auto config = told.By<OperationCode::ReadDcbConfig>(key)) {
        part.dcb = tavrosim::DcbFrom(*config);
    }
}

}  // namespace

tavrosim::FcoePart FcoePartFrom(const Told& told, const std::string& key,
                                const std::string& nodeWwn, std::set<std::string>& identifiers) {
    tavrosim::FcoePart part;
    part.portWwn = key;
    part.nodeWwn = IsWwn(nodeWwn) ? nodeWwn : key;
    if (const auto port = told.By<OperationCode::ReadFcoePort>(key)) {
        part.hardware = HardwareFrom(*port);
        part.fipVlanId = port->texts[fcoe_port::FabricVlan];
        if (IsWwn(port->texts[fcoe_port::NodeWwn])) {
            part.nodeWwn = port->texts[fcoe_port::NodeWwn];
        }
        if (IsFcid(port->texts[fcoe_port::Fcid])) {
            part.fcid = port->texts[fcoe_port::Fcid];
        }
    }
    if (const auto fip = told.By<OperationCode::ReadFip>(key)) {
        part.fipVlanId = fip->vlanId;
    }
    TellDcb(told, key, part);
    TellBindings(told, key, part);
    TellVirtualPorts(told, key, identifiers, part);
    if (const auto statistics = told.By<OperationCode::ReadFcoeStatistics>(key, std::uint32_t{0})) {
        part.statistics = tavrosim::FcoeStatisticsFrom(*statistics);
    }
    if (const auto boot = told.By<OperationCode::ReadFcoeBoot>(key)) {
        part.boot = tavrosim::FcoeBootFrom(*boot);
        if (part.hardware && !part.hardware->bootCodeVersion) {
            StateText(part.hardware->bootCodeVersion, boot->bootCodeVersion);
        }
    }
    return part;
}

}  // namespace tavrohost
