// The TCP/IP settings of Ethernet and iSCSI functions.
#include <algorithm>
#include <array>
#include <sstream>
#include <string>
#include <utility>

#include "library/text/text.h"
#include "simulator/host/lookup.h"
#include "simulator/model/families.h"
#include "simulator/model/ip_address.h"
#include "simulator/model/model.h"
#include "simulator/model/system_interface.h"
#include "simulator/model/tcpip_records.h"
#include "tavroapi/codes.h"
#include "tavroapi/tcpip_records.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavroapi::TcpIpSettings;

// The DHCP server of the host's network hands out the first address in its range that no function
// of the host has.
constexpr int FirstLease = 100;
constexpr int LastLease = 199;

// The address that the program's iSCSI DHCP command sends with every port. It is an example, which
// several functions may have.
constexpr std::string_view ExampleIPv6 = "2001:DB8:85A3:42:1000:8A2E:370:7334";

// The function of another interface than that of `except` that has the address, IPv4 or IPv6.
const Function* OwnerOf(const Host& host, const std::string& address, const Function& except) {
    const AddressMatch isTheSame(address);
    for (const Adapter& adapter : host.adapters) {
        for (const Port& port : adapter.ports) {
            for (const Function& function : port.functions) {
                const TcpIp* settings = TcpIpOf(function);
                if (&function != &except && !IsSameInterface(function, except) &&
                    settings != nullptr &&
                    (isTheSame(settings->address) || isTheSame(settings->addressIPv6))) {
                    return &function;
                }
            }
        }
    }
    return nullptr;
}

bool IsUnset(const std::string& address) {
    return address.find_first_not_of("0.:") == std::string::npos;
}

// Done unless another function has the address, and only one may have it.
Outcome CheckUnused(const Host& host, const std::string& address, const Function& function) {
    static const AddressMatch isExample(ExampleIPv6);
    if (IsUnset(address) || isExample(address)) {
        return Done();
    }
    const Function* const owner = OwnerOf(host, address, function);
    return owner == nullptr ? Done()
                            : Refused(Status::AddressInUse, L"The address is in use on this host.",
                                      L"Choose another address.",
                                      WideFromUtf8(address) + L" belongs to the function " +
                                          WideFromUtf8(KeyOf(*owner)) + L".");
}

// A field of the record that is empty leaves the setting as it is.
void TakeOver(const std::string& field, std::string& setting) {
    if (!field.empty()) {
        setting = field;
    }
}

// A setting that is empty is one that the function does not have.
void TakeOverWhereItIs(const std::string& field, std::string& setting) {
    if (!setting.empty()) {
        TakeOver(field, setting);
    }
}

// An address from the pool: `pattern` and a number.
std::string LeaseAddress(const Host& host, const Function& function, const std::string& pattern) {
    for (int number = FirstLease; number <= LastLease; ++number) {
        std::string address = pattern + std::to_string(number);
        if (OwnerOf(host, address, function) == nullptr) {
            return address;
        }
    }
    return {};
}

Outcome RefuseLease() {
    return Refused(Status::NoLease, L"The DHCP server has no free address.",
                   L"Give the function a fixed address.");
}

Outcome ApplyIPv4(const Host& host, const Function& function, const TcpIpSettings& wanted,
                  TcpIp& settings) {
    TakeOver(wanted.dhcpEnabled, settings.dhcp);
    if (wanted.dhcpEnabled == "Yes") {
        settings.address = LeaseAddress(host, function, "192.0.2.");
        settings.subnetMask = "255.255.255.0";
        settings.gateway = "192.0.2.1";
        return settings.address.empty() ? RefuseLease() : Done();
    }
    TakeOver(wanted.ipAddress, settings.address);
    TakeOver(wanted.subnetMask, settings.subnetMask);
    TakeOver(wanted.defaultGateway, settings.gateway);
    return CheckUnused(host, wanted.ipAddress, function);
}

Outcome ApplyIPv6(const Host& host, const Function& function, const TcpIpSettings& wanted,
                  TcpIp& settings) {
    TakeOver(wanted.dhcpEnabledIPv6, settings.dhcpIPv6);
    TakeOver(wanted.staticPrefixLength, settings.prefixLengthIPv6);
    if (wanted.dhcpEnabledIPv6 == "Yes") {
        settings.addressIPv6 = LeaseAddress(host, function, "2001:db8::");
        settings.gatewayIPv6 = "2001:db8::1";
        return settings.addressIPv6.empty() ? RefuseLease() : Done();
    }
    TakeOver(wanted.staticIPv6, settings.addressIPv6);
    TakeOver(wanted.gatewayIPv6, settings.gatewayIPv6);
    return CheckUnused(host, wanted.staticIPv6, function);
}

void ApplyVlan(const TcpIpSettings& wanted, TcpIp& settings) {
    TakeOver(wanted.vlanEnabled == "No" ? "0" : wanted.vlanId, settings.vlanId);
    TakeOverWhereItIs(wanted.vlanPriority, settings.vlanPriority);
    TakeOverWhereItIs(wanted.maxFrameSize, settings.maxFrameSize);
}

// The Ethernet function of the port that is one interface with the function; null where none is.
const Function* InterfaceOf(const Port& port, const Function& function) {
    const auto found = std::ranges::find_if(port.functions, [&](const Function& other) {
        return other.ethernet && IsSameInterface(other, function);
    });
    return found == port.functions.end() ? nullptr : &*found;
}

Outcome SetIscsiTcpIp(const Edited<IscsiPart>& at, const TcpIpSettings& wanted) {
    if (const Function* const interface = InterfaceOf(at.port, at.function)) {
        return tavrolib::AddressOfInterface(interface->ethernet->interfaceName);
    }
    TcpIp& settings = at.part.tcpIp;
    ApplyVlan(wanted, settings);
    Outcome outcome = ApplyIPv4(at.host, at.function, wanted, settings);
    return outcome.IsDone() ? ApplyIPv6(at.host, at.function, wanted, settings) : outcome;
}

// A driver takes another VLAN over when the host restarts; everything else takes effect at once.
Outcome SetEthernetTcpIp(const Edited<EthernetPart>& at, TcpIpSettings& wanted) {
    TcpIp& settings = at.part.tcpIp;
    const std::string vlanInForce = settings.vlanId;
    if (settings.pendingVlanId) {
        settings.vlanId = *settings.pendingVlanId;
        settings.pendingVlanId.reset();
    }
    ApplyVlan(wanted, settings);
    if (settings.vlanId != vlanInForce) {
        settings.pendingVlanId = std::exchange(settings.vlanId, vlanInForce);
    }
    wanted.result = settings.pendingVlanId ? tavroapi::AppliedAtRestart : 0;
    Outcome outcome = wanted.ipVersion == "1" ? ApplyIPv4(at.host, at.function, wanted, settings)
                                              : ApplyIPv6(at.host, at.function, wanted, settings);
    for (Function& other : at.port.functions) {
        if (other.iscsi && IsSameInterface(other, at.function)) {
            TcpIp shared = settings;
            shared.maxFrameSize = other.iscsi->tcpIp.maxFrameSize;
            other.iscsi->tcpIp = std::move(shared);
        }
    }
    return outcome;
}

// The link-local address that every interface forms from its MAC (modified EUI-64).
std::string LinkLocalAddress(const std::string& mac) {
    const std::string digits = NormalIdentifier(mac);
    if (digits.size() != MacDigits) {
        return {};
    }
    const auto octet = [&digits](std::size_t index) {
        return std::stoul(digits.substr(2 * index, 2), nullptr, 16);
    };
    constexpr unsigned long LocalBit = 2;
    const std::array<unsigned long, 4> groups{((octet(0) ^ LocalBit) << 8U) | octet(1),
                                              (octet(2) << 8U) | 0xFFU, 0xFE00U | octet(3),
                                              (octet(4) << 8U) | octet(5)};
    // Groups of zeros behind the prefix are what its "::" stands for.
    std::string address = "fe80:";
    for (const unsigned long group : groups) {
        if (group != 0 || address.back() != ':') {
            std::ostringstream text;
            text << ':' << std::hex << group;
            address += text.str();
        }
    }
    return address;
}

Outcome ReadEthernetTcpIp(const Viewed<EthernetPart>& at, TcpIpSettings& record) {
    const TcpIp& settings = at.part.tcpIp;
    record = RecordOf(settings);
    if (!IsUnset(settings.addressIPv6)) {
        record.linkLocalIPv6 = LinkLocalAddress(at.function.mac);
    }
    return Done();
}

}  // namespace

std::span<const OperationModel> TcpIpOperations() {
    static constexpr OperationModel Rows[] = {
        Changes<OperationCode::SetIscsiTcpIp, IscsiPart, SetIscsiTcpIp>(),
        Changes<OperationCode::SetEthernetTcpIp, EthernetPart, SetEthernetTcpIp>(),
        Reads<OperationCode::ReadEthernetTcpIp, EthernetPart, ReadEthernetTcpIp>(),
    };
    return Rows;
}

}  // namespace tavrosim
