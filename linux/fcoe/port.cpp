// What an FCoE function tells of itself.
#include "library/text/identifier.h"
#include "linux/fcoe/fc_host.h"
#include "linux/fcoe/kernel_texts.h"
#include "linux/inventory/fibre_channel_names.h"
#include "linux/inventory/vpd.h"
#include "linux/system/attribute.h"
#include "linux/system/host_name.h"

namespace tavrolinux {
namespace {

namespace fcoe_port = tavroapi::fcoe_port;

std::string KnownAttributeOf(const std::filesystem::path& file) {
    return KnownText(ReadAttribute(file));
}

const std::string& FirstKnown(const std::string& first, const std::string& second) {
    return first.empty() ? second : first;
}

std::string SerialNumberOf(const Place& at, const FcHost& host) {
    std::string told = KnownAttributeOf(host.attributes / "serial_number");
    if (!told.empty() || !at.interface.pci) {
        return told;
    }
    return ReadProductData(at.interface.pci->device).value_or(ProductData{}).serialNumber;
}

std::string DriverOf(const Place& at, const FcHost& host) {
    const std::filesystem::path scsiHost = host.device / "scsi_host" / host.device.filename();
    return FirstKnown(KnownAttributeOf(scsiHost / "proc_name"), at.interface.driver);
}

// The forwarder that the kernel has chosen, by its folder; empty without one.
std::filesystem::path ForwarderOf(const FcHost& host) {
    if (host.controller) {
        for (const std::string& name : NamesIn(*host.controller)) {
            if (NumberBehind("fcf_", name) &&
                ReadNumber(*host.controller / name / "selected") == std::uint64_t{1}) {
                return *host.controller / name;
            }
        }
    }
    return {};
}

// "02-00-5E-FC-00-01" of "02:00:5e:fc:00:01", and of the digits alone.
std::string MacTextOf(std::string_view told) {
    EthernetAddress address{};
    const std::string digits = tavrolib::NormalIdentifier(told);
    if (digits.size() != tavrolib::MacDigits) {
        return {};
    }
    for (std::size_t place = 0; place < address.size(); ++place) {
        constexpr int Hexadecimal = 16;
        address.at(place) = static_cast<std::uint8_t>(
            std::stoul(digits.substr(2 * place, 2), nullptr, Hexadecimal));
    }
    return MacText(address);
}

void TellFabric(const FcHost& host, const std::string& fcid, tavroapi::FcoePortRecord& record) {
    const std::filesystem::path forwarder = ForwarderOf(host);
    if (forwarder.empty()) {
        return;
    }
    const std::string map = HexadecimalText(ReadNumber(forwarder / "fc_map"), tavrolib::FcidDigits);
    record.texts[fcoe_port::FcfMac] = MacTextOf(ReadAttribute(forwarder / "mac"));
    record.texts[fcoe_port::FcfNodeWwn] = ReadWwn(forwarder / "switch_name");
    record.texts[fcoe_port::FcMap] = map;
    // The fabric provides a port's address: its map, and the port's own identifier.
    if (!map.empty() && !fcid.empty()) {
        record.texts[fcoe_port::FpmaMac] = MacTextOf(map + fcid);
    }
    const auto vlan = ReadNumber(forwarder / "vlan_id");
    record.texts[fcoe_port::FabricVlan] = vlan.value_or(0) == 0 ? "" : std::to_string(*vlan);
}

}  // namespace

Outcome ReadFcoePort(const Place& at, tavroapi::FcoePortRecord& record) {
    const FcHost host = FcHostOf(at);
    const std::filesystem::path& told = host.attributes;
    const std::string link = FcLinkText(ReadAttribute(told / "port_state"));
    const std::string speed = GigabitsText(ReadAttribute(told / "speed"));
    const std::string fcid = HexadecimalText(ReadNumber(told / "port_id"), tavrolib::FcidDigits);
    record.texts[fcoe_port::Title] = at.interface.portWwn;
    record.texts[fcoe_port::NodeWwn] = ReadWwn(told / "node_name");
    record.texts[fcoe_port::PortWwn] = ReadWwn(told / "port_name");
    record.texts[fcoe_port::FabricName] = ReadWwn(told / "fabric_name");
    record.texts[fcoe_port::ModelName] =
        FirstKnown(KnownAttributeOf(told / "model"), at.adapter.name);
    record.texts[fcoe_port::SerialNumber] = SerialNumberOf(at, host);
    record.texts[fcoe_port::DriverVersion] = KnownAttributeOf(told / "driver_version");
    record.texts[fcoe_port::Driver] = DriverOf(at, host);
    record.texts[fcoe_port::HardwareVersion] = KnownAttributeOf(told / "hardware_version");
    record.texts[fcoe_port::OptionRomVersion] = KnownAttributeOf(told / "optionrom_version");
    record.texts[fcoe_port::FirmwareVersion] = KnownAttributeOf(told / "firmware_version");
    record.texts[fcoe_port::LinkState] = link;
    record.texts[fcoe_port::PortType] = FcPortTypeText(ReadAttribute(told / "port_type"));
    record.texts[fcoe_port::Fcid] = fcid;
    record.texts[fcoe_port::LinkSpeed] =
        link != "Up" ? "None" : FirstKnown(speed, std::string("Unknown"));
    record.texts[fcoe_port::SupportedClasses] = KnownAttributeOf(told / "supported_classes");
    record.texts[fcoe_port::SupportedTypes] = FcTypesText(ReadAttribute(told / "supported_fc4s"));
    record.texts[fcoe_port::DiscoveredPorts] = std::to_string(FcTargetsOf(at).size());
    record.texts[fcoe_port::MaximumFrameSize] =
        LeadingDigits(ReadAttribute(told / "maxframe_size"));
    record.texts[fcoe_port::SupportedSpeeds] =
        GigabitsText(ReadAttribute(told / "supported_speeds"));
    record.texts[fcoe_port::DeviceName] = told.filename().string();
    record.texts[fcoe_port::HostName] = ReadHostName();
    TellFabric(host, fcid, record);
    return Done();
}

}  // namespace tavrolinux
