#include "linux/inventory/machine.h"

#include <linux/if_arp.h>
#include <linux/netlink.h>

#include <algorithm>
#include <array>
#include <tuple>
#include <utility>

#include "library/text/identifier.h"
#include "linux/inventory/fibre_channel.h"
#include "linux/inventory/pci.h"
#include "linux/system/attribute.h"
#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

// The interfaces without a device that are ports nevertheless: a guest or a namespace has nothing
// else. Bridges, bonds and VLANs stand on ports.
constexpr std::array<std::string_view, 3> ListedKinds{"veth", "macvlan", "tun"};

std::string WithoutSeparators(std::string_view identifier) {
    return tavrolib::NormalIdentifier(identifier);
}

// The interface's folder in sysfs; empty where that shows another interface of this name, which one
// of another network namespace is.
std::filesystem::path FolderOf(const Roots& roots, const Link& link) {
    std::filesystem::path folder = roots.sys / "class/net" / link.name;
    const bool isSame = ReadNumber(folder / "ifindex") == static_cast<std::uint64_t>(link.index) &&
                        WithoutSeparators(ReadAttribute(folder / "address")) ==
                            WithoutSeparators(MacText(*link.address));
    return isSame ? folder : std::filesystem::path();
}

// A device is known by its folder alone. One that is found neither now nor when it is looked at
// once more may be a port or none.
std::filesystem::path FolderOfDevice(const Roots& roots, Socket& route, const Link& link) {
    std::filesystem::path folder = FolderOf(roots, link);
    if (folder.empty() && link.kind.empty()) {
        folder = FolderOf(roots, ReadLink(route, link.index));
        if (folder.empty()) {
            throw SystemFailure(ENOENT, "looking for " + link.name + " in " +
                                            (roots.sys / "class/net").string() +
                                            ", which has to show this network namespace");
        }
    }
    return folder;
}

bool IsEthernet(const Link& link) {
    return link.hardwareType == ARPHRD_ETHER && link.address;
}

std::optional<Interface> InterfaceOf(const Roots& roots, Socket& route, const Link& link) {
    Interface interface;
    interface.index = link.index;
    interface.name = link.name;
    interface.key = MacText(link.permanentAddress.value_or(*link.address));
    if (std::ranges::find(ListedKinds, link.kind) != ListedKinds.end()) {
        interface.driver = link.kind;
        interface.folder = FolderOf(roots, link);
        return interface;
    }
    interface.folder = FolderOfDevice(roots, route, link);
    const auto device =
        interface.folder.empty() ? std::nullopt : Resolved(interface.folder / "device");
    if (!device) {
        return std::nullopt;
    }
    interface.driver = LinkedName(*device / "driver");
    interface.pci = PciPlaceOf(*device);
    const auto port = ReadNumber(interface.folder / "dev_port");
    interface.devicePort = static_cast<std::uint32_t>(port.value_or(0));
    TakeFibreChannelHost(roots, interface);
    return interface;
}

// The port that the interface is; nothing for all that is none, and what vanishes meanwhile.
std::optional<Interface> PortOf(const Roots& roots, Socket& route, const Link& link) {
    try {
        return IsEthernet(link) ? InterfaceOf(roots, route, link) : std::nullopt;
    } catch (const SystemFailure& failure) {
        if (failure.IsGone()) {
            return std::nullopt;
        }
        throw;
    }
}

// What orders the ports of one adapter.
auto PlaceOnAdapter(const Interface& interface) {
    return std::tuple(interface.pci ? interface.pci->function : 0, interface.devicePort,
                      interface.index);
}

}  // namespace

std::string PortName(std::uint32_t place) {
    return "Port " + std::to_string(place + 1);
}

std::string MacText(const EthernetAddress& address) {
    constexpr std::string_view Digits = "0123456789ABCDEF";
    std::string text;
    for (const std::uint8_t octet : address) {
        if (!text.empty()) {
            text += '-';
        }
        text += Digits[octet >> 4U];
        text += Digits[octet & 0xFU];
    }
    return text;
}

Machine Machine::Read(const Roots& roots) {
    Socket route(NETLINK_ROUTE);
    PciNames names;
    // The bus comes first, in the order of its slots, then everything else by name.
    std::map<std::string, Adapter> onBus;
    std::map<std::string, Adapter> others;
    for (const Link& link : ReadLinks(route)) {
        std::optional<Interface> interface = PortOf(roots, route, link);
        if (!interface) {
            continue;
        }
        if (interface->pci) {
            Adapter& adapter = onBus[interface->pci->slot];
            if (adapter.name.empty()) {
                adapter.name = names.NameOf(*interface->pci) + ' ' + interface->pci->slot;
            }
            adapter.ports.push_back(std::move(*interface));
        } else {
            Adapter& adapter = others[interface->name];
            adapter.name = interface->driver + ' ' + interface->name;
            adapter.ports.push_back(std::move(*interface));
        }
    }
    std::vector<Adapter> adapters;
    for (std::map<std::string, Adapter>* const found : {&onBus, &others}) {
        for (auto& [key, adapter] : *found) {
            std::ranges::sort(adapter.ports, {}, PlaceOnAdapter);
            adapters.push_back(std::move(adapter));
        }
    }
    return {roots, std::move(adapters)};
}

Machine::Machine(Roots roots, std::vector<Adapter> adapters)
    : roots_(std::move(roots)), adapters_(std::move(adapters)) {
    for (Adapter& adapter : adapters_) {
        byName_.emplace(adapter.name, &adapter);
        std::uint32_t place = 0;
        for (Interface& interface : adapter.ports) {
            interface.place = place++;
            byMac_.emplace(WithoutSeparators(interface.key), Found{&adapter, &interface});
            if (!interface.portWwn.empty()) {
                byWwn_.emplace(WithoutSeparators(interface.portWwn), Found{&adapter, &interface});
            }
        }
    }
}

const Adapter* Machine::FindAdapter(std::string_view name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : found->second;
}

std::vector<Machine::Found> Machine::Find(std::string_view identifier, FunctionKind kind) const {
    const std::string wanted = WithoutSeparators(identifier);
    std::vector<Found> found;
    const auto takeFrom = [&](const auto& index) {
        const auto [first, last] = index.equal_range(wanted);
        for (auto entry = first; entry != last; ++entry) {
            found.push_back(entry->second);
        }
    };
    if (wanted.empty()) {
        return found;
    }
    if (kind != FunctionKind::Fcoe) {
        takeFrom(byMac_);
    }
    if (kind == FunctionKind::Fcoe || kind == FunctionKind::Any) {
        takeFrom(byWwn_);
    }
    return found;
}

}  // namespace tavrolinux
