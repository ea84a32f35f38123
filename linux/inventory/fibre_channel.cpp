#include "linux/inventory/fibre_channel.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "linux/inventory/fibre_channel_names.h"
#include "linux/system/attribute.h"

namespace tavrolinux {
namespace {

bool IsVlan(const std::filesystem::path& interface) {
    return ReadAttribute(interface / "uevent").find("DEVTYPE=vlan") != std::string::npos;
}

// Where a host hangs in the tree of devices: an interface, or a device with a function for Fibre
// Channel. Between a host and its interface stands a controller, where the kernel has such.
std::filesystem::path CarrierOf(const std::filesystem::path& host) {
    const std::filesystem::path parent = host.parent_path();
    return NumberBehind("ctlr_", parent.filename().string()) ? parent.parent_path() : parent;
}

bool IsOn(const Interface& interface, const std::filesystem::path& carrier) {
    if (Resolved(interface.folder) == carrier) {
        return true;
    }
    // The ports of one device share its hosts; the first has them.
    if (interface.devicePort == 0 && Resolved(interface.folder / "device") == carrier) {
        return true;
    }
    return !LinkedName(carrier / ("lower_" + interface.name)).empty() && IsVlan(carrier);
}

}  // namespace

void TakeFibreChannelHost(const Roots& roots, Interface& interface) {
    if (interface.folder.empty()) {
        return;
    }
    const std::filesystem::path all = roots.sys / "class/fc_host";
    std::vector<std::pair<std::uint64_t, std::string>> hosts;
    for (const std::string& name : NamesIn(all)) {
        if (const auto number = NumberBehind("host", name)) {
            hosts.emplace_back(*number, name);
        }
    }
    std::ranges::sort(hosts);
    for (const auto& [number, name] : hosts) {
        const auto device = Resolved(all / name / "device");
        const std::string portWwn = ReadWwn(all / name / "port_name");
        if (device && !portWwn.empty() && IsOn(interface, CarrierOf(*device))) {
            interface.fcHost = name;
            interface.portWwn = portWwn;
            interface.nodeWwn = ReadWwn(all / name / "node_name");
            return;
        }
    }
}

}  // namespace tavrolinux
