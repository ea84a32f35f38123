#include <algorithm>
#include <charconv>
#include <map>
#include <string>
#include <string_view>

#include "simulator/host/identifier_check.h"
#include "simulator/host/lookup.h"
#include "simulator/model/ip_address.h"
#include "twin/check/contradictions.h"
#include "twin/check/walk.h"

namespace tavrohost {
namespace {

using tavrosim::Function;
using tavrosim::IpAddress;
using tavrosim::TcpIp;

constexpr const char* AddressTwice = "this address stands twice";

// Texts that write one address in different ways give one key.
std::string AddressKey(const std::string& text) {
    const auto address = tavrosim::IpAddressFrom(text);
    return address ? std::string(address->octets.begin(), address->octets.end()) +
                         (address->isIPv6 ? "6" : "4") + address->zone
                   : text;
}

// Whether several functions may have the address: one that is none, one that holds on its link
// only, and the example that iSCSI functions with DHCP are given.
bool MayBeShared(const IpAddress& address) {
    static const auto Example = tavrosim::IpAddressFrom("2001:db8:85a3:42:1000:8a2e:370:7334");
    const bool isUnset =
        std::ranges::all_of(address.octets, [](std::uint8_t octet) { return octet == 0; });
    const bool isLinkLocal =
        address.isIPv6 && address.octets[0] == 0xFE && (address.octets[1] & 0xC0) == 0x80;
    return isUnset || isLinkLocal || address == Example;
}

bool IsNumberUpTo(const std::string& text, int most) {
    int number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && number >= 0 &&
           number <= most;
}

// The checks of one function's settings. An empty text is one that nobody has told.
class TcpIpCheck {
  public:
    TcpIpCheck(const TcpIp& settings, const Place& place, Findings& findings)
        : settings_(settings), place_(place), findings_(findings) {}

    void CheckAll() {
        CheckAddress("address", settings_.address, false);
        CheckAddress("subnetMask", settings_.subnetMask, false);
        CheckAddress("gateway", settings_.gateway, false);
        CheckAddress("addressIPv6", settings_.addressIPv6, true);
        CheckAddress("gatewayIPv6", settings_.gatewayIPv6, true);
        CheckNumber("vlanId", settings_.vlanId, LargestVlanId);
        CheckNumber("pendingVlanId", settings_.pendingVlanId.value_or(""), LargestVlanId);
        CheckNumber("vlanPriority", settings_.vlanPriority, 7);
        CheckNumber("prefixLengthIPv6", settings_.prefixLengthIPv6, 128);
        if (settings_.pendingVlanId == settings_.vlanId &&
            findings_.IsReadable(Place(place_, "vlanId"))) {
            findings_.Add(Place(place_, "pendingVlanId"), "what is pending is in force already");
        }
    }

  private:
    static constexpr int LargestVlanId = 4094;

    void CheckAddress(const char* name, const std::string& text, bool isIPv6) {
        const auto address = tavrosim::IpAddressFrom(text);
        if (!text.empty() && (!address || address->isIPv6 != isIPv6)) {
            findings_.Add(Place(place_, name),
                          isIPv6 ? "an IPv6 address is wanted" : "an IPv4 address is wanted");
        }
    }

    void CheckNumber(const char* name, const std::string& text, int most) {
        if (!text.empty() && !IsNumberUpTo(text, most)) {
            findings_.Add(Place(place_, name), "the text of a whole number from 0 to " +
                                                   std::to_string(most) + " is wanted");
        }
    }

    const TcpIp& settings_;
    const Place& place_;
    Findings& findings_;
};

// Tells addresses that functions with different MACs have. An Ethernet and an iSCSI function with
// one MAC are one station.
class Owners {
  public:
    explicit Owners(Findings& findings) : findings_(findings) {}

    void Meet(const std::string& text, const std::string& mac, const Place& place) {
        const auto address = tavrosim::IpAddressFrom(text);
        if (!address || MayBeShared(*address)) {
            return;
        }
        const auto [owner, isNew] =
            owners_.try_emplace(AddressKey(text), tavrosim::NormalIdentifier(mac));
        if (!isNew && owner->second != tavrosim::NormalIdentifier(mac)) {
            findings_.Add(place, "another function has this address");
        }
    }

  private:
    Findings& findings_;
    std::map<std::string, std::string> owners_;
};

void CheckFunctions(const tavrosim::Host& host, const Place& place, Findings& findings) {
    OnceEach<std::string> interfaces("another function has this interface", findings);
    Owners owners(findings);
    ForEachFunction(host, place, [&](const Function& function, const Place& at) {
        const char* const kind = function.ethernet ? "ethernet" : "iscsi";
        const TcpIp* const settings = function.ethernet ? &function.ethernet->tcpIp
                                      : function.iscsi  ? &function.iscsi->tcpIp
                                                        : nullptr;
        if (settings == nullptr) {
            return;
        }
        const Place part(at, kind);
        const Place tcpIp(part, "tcpIp");
        if (function.ethernet && !function.ethernet->interfaceName.empty()) {
            interfaces.Meet(function.ethernet->interfaceName, Place(part, "interface"));
        }
        TcpIpCheck(*settings, tcpIp, findings).CheckAll();
        if (!function.ethernet && settings->pendingVlanId) {
            findings.Add(Place(tcpIp, "pendingVlanId"), "only an Ethernet function can have one");
        }
        if (findings.IsReadable(Place(at, "mac"))) {
            owners.Meet(settings->address, function.mac, Place(tcpIp, "address"));
            owners.Meet(settings->addressIPv6, function.mac, Place(tcpIp, "addressIPv6"));
        }
    });
}

}  // namespace

void CheckAddresses(const tavrosim::Host& host, const Place& place, Findings& findings) {
    constexpr std::uint32_t Everything = 100;
    OnceEach<std::string> servers(AddressTwice, findings);
    ForEachAt(
        host.isnsServers, Place(place, "isnsServers"),
        [&](const std::string& server, const Place& at) { servers.Meet(AddressKey(server), at); });
    OnceEach<std::string> reachable(AddressTwice, findings);
    ForEachAt(host.reachable, Place(place, "reachable"),
              [&](const tavrosim::ReachableAddress& each, const Place& at) {
                  reachable.Meet(AddressKey(each.address), Place(at, "address"));
                  if (!tavrosim::IpAddressFrom(each.address)) {
                      findings.Add(Place(at, "address"), "an IPv4 or IPv6 address is wanted");
                  }
                  if (each.lossPercent > Everything) {
                      findings.Add(Place(at, "lossPercent"), "at most 100 is wanted");
                  }
              });
    CheckFunctions(host, place, findings);
}

}  // namespace tavrohost
