#include "linux/iscsi/port.h"

#include "linux/inventory/ip_settings.h"
#include "linux/inventory/link_texts.h"
#include "linux/serve/operation.h"

namespace tavrolinux {
namespace {

using tavroapi::IscsiParameterRecord;
using tavroapi::IscsiPortRecord;
using tavroapi::OperationCode;
namespace iscsi_port = tavroapi::iscsi_port;
namespace iscsi_defaults = tavroapi::iscsi_defaults;

template <std::string tavroapi::TcpIpSettings::*Text>
std::string OfTcpIp(const IscsiPort& port) {
    return port.tcpIp.*Text;
}

std::string DriverVersion(const IscsiPort& port) {
    return port.driver ? port.driver->version : std::string();
}

std::string FirmwareVersion(const IscsiPort& port) {
    return port.driver ? port.driver->firmware : std::string();
}

// Functions of iSCSI have the odd numbers.
std::string FunctionNumber(const IscsiPort& port) {
    return std::to_string(2 * port.place + 1);
}

using tavroapi::TcpIpSettings;

constexpr IscsiPortFact IscsiFacts[] = {
    {iscsi_port::FunctionNumber, FunctionNumber},
    {iscsi_port::Driver, [](const IscsiPort& port) { return port.kernelDriver; }},
    {iscsi_port::DriverVersion, DriverVersion},
    {iscsi_port::Mac, [](const IscsiPort& port) { return port.key; }},
    {iscsi_port::ModelName, [](const IscsiPort& port) { return port.adapterName; }},
    {iscsi_port::SerialNumber, [](const IscsiPort& port) { return port.product.serialNumber; }},
    {iscsi_port::LinkStatus, [](const IscsiPort& port) { return LinkStateText(port.link); }},
    {iscsi_port::LinkSpeed,
     [](const IscsiPort& port) { return LinkSpeedText(port.link, port.linkModes); }},
    {iscsi_port::Dhcp, OfTcpIp<&TcpIpSettings::dhcpEnabled>},
    {iscsi_port::Address, OfTcpIp<&TcpIpSettings::ipAddress>},
    {iscsi_port::SubnetMask, OfTcpIp<&TcpIpSettings::subnetMask>},
    {iscsi_port::Gateway, OfTcpIp<&TcpIpSettings::defaultGateway>},
    {iscsi_port::Vlan, OfTcpIp<&TcpIpSettings::vlanEnabled>},
    {iscsi_port::VlanId, OfTcpIp<&TcpIpSettings::vlanId>},
    {iscsi_port::VlanPriority, OfTcpIp<&TcpIpSettings::vlanPriority>},
    {iscsi_port::MaximumFrameSize,
     [](const IscsiPort& port) { return std::to_string(port.link.mtu); }},
    {iscsi_port::DhcpIPv6, OfTcpIp<&TcpIpSettings::dhcpEnabledIPv6>},
    {iscsi_port::AddressIPv6, OfTcpIp<&TcpIpSettings::staticIPv6>},
    {iscsi_port::PrefixLengthIPv6, OfTcpIp<&TcpIpSettings::staticPrefixLength>},
    {iscsi_port::GatewayIPv6, OfTcpIp<&TcpIpSettings::gatewayIPv6>},
    {iscsi_port::ActiveSessions, [](const IscsiPort&) { return std::string("0"); }},
    {iscsi_port::FirmwareVersion, FirmwareVersion},
};

// What libiscsi proposes while it logs in.
constexpr IscsiDefault ProposedParameters[] = {
    {iscsi_defaults::MaxConnections, "1"},        {iscsi_defaults::InitialR2T, "No"},
    {iscsi_defaults::ImmediateData, "Yes"},       {iscsi_defaults::MaxBurstLength, "262144"},
    {iscsi_defaults::FirstBurstLength, "262144"}, {iscsi_defaults::TimeToWait, "2"},
    {iscsi_defaults::TimeToRetain, "0"},          {iscsi_defaults::MaxOutstandingR2T, "1"},
    {iscsi_defaults::DataPduInOrder, "Yes"},      {iscsi_defaults::DataSequenceInOrder, "Yes"},
    {iscsi_defaults::ErrorRecoveryLevel, "0"},    {iscsi_defaults::MaxReceiveLength, "262144"},
    {iscsi_defaults::HeaderDigest, "No"},         {iscsi_defaults::DataDigest, "No"},
};

IscsiPort ReadPortAt(const Place& at) {
    Socket route(NETLINK_ROUTE);
    Ethtool ethtool;
    IscsiPort port;
    port.adapterName = at.adapter.name;
    port.key = at.interface.key;
    port.place = at.interface.place;
    port.link = ReadLink(route, at.interface.index);
    port.kernelDriver = at.interface.driver;
    port.driver = ReadDriverInformation(port.link);
    port.linkModes = ReadLinkModes(ethtool, port.link);
    if (at.interface.pci) {
        port.product = ReadProductData(at.interface.pci->device).value_or(ProductData{});
    }
    port.tcpIp = ReadIpSettings(route, port.link);
    return port;
}

Outcome ReadIscsiPort(const Place& at, IscsiPortRecord& record) {
    const IscsiPort port = ReadPortAt(at);
    for (const IscsiPortFact& fact : IscsiFacts) {
        record.texts[fact.position] = fact.tell(port);
    }
    return Done();
}

Outcome ReadIscsiDefaults(const Place& /*at*/, IscsiParameterRecord& record) {
    for (const IscsiDefault& proposed : ProposedParameters) {
        record.texts[proposed.position] = proposed.text;
    }
    return Done();
}

}  // namespace

std::span<const IscsiPortFact> IscsiPortFacts() {
    return IscsiFacts;
}

std::span<const IscsiDefault> IscsiDefaults() {
    return ProposedParameters;
}

std::span<const Operation> IscsiPortOperations() {
    static constexpr Operation Rows[] = {
        OnFunction<OperationCode::ReadIscsiPort, FunctionKind::Iscsi, ReadIscsiPort>(),
        OnFunction<OperationCode::ReadIscsiDefaults, FunctionKind::Iscsi, ReadIscsiDefaults>(),
        NotOffered<OperationCode::ReadIscsiStatistics>(L"an iSCSI driver that counts"),
    };
    return Rows;
}

}  // namespace tavrolinux
