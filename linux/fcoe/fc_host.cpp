#include "linux/fcoe/fc_host.h"

#include <algorithm>
#include <cerrno>
#include <tuple>

#include "linux/inventory/fibre_channel_names.h"
#include "linux/system/attribute.h"
#include "linux/system/failure.h"

namespace tavrolinux {

FcHost FcHostOf(const Place& at) {
    const std::string name = at.interface.fcHost.value_or("");
    FcHost host;
    host.attributes = at.machine.SystemRoots().sys / "class/fc_host" / name;
    const auto device = Resolved(host.attributes / "device");
    if (name.empty() || !device) {
        throw SystemFailure(ENODEV, "reading the Fibre Channel host of " + at.interface.name);
    }
    host.device = *device;
    const std::filesystem::path parent = device->parent_path();
    if (NumberBehind("ctlr_", parent.filename().string())) {
        host.controller = parent;
    }
    return host;
}

std::vector<FcTarget> FcTargetsOf(const Place& at) {
    const FcHost host = FcHostOf(at);
    const auto hostNumber = NumberBehind("host", host.attributes.filename().string());
    const std::string prefix = "rport-" + std::to_string(hostNumber.value_or(0)) + ':';
    const std::filesystem::path all = at.machine.SystemRoots().sys / "class/fc_remote_ports";
    std::vector<FcTarget> targets;
    for (const std::string& name : NamesIn(all)) {
        // "rport-3:0-1" is the second remote port of the first bus of host 3.
        const auto dash = name.find_last_of('-');
        const auto bus = NumberBehind(prefix, name.substr(0, dash));
        const auto number = bus ? NumberBehind("-", name.substr(dash)) : std::nullopt;
        if (!number) {
            continue;
        }
        const std::string state = ReadAttribute(all / name / "port_state");
        const bool isRemembered = state == "Not Present" || state == "Deleted";
        const std::string roles = ReadAttribute(all / name / "roles");
        if (!isRemembered && roles.find("FCP Target") != std::string::npos) {
            targets.push_back({all / name, *bus, *number, ReadWwn(all / name / "port_name")});
        }
    }
    std::ranges::sort(targets, {},
                      [](const FcTarget& target) { return std::tuple(target.bus, target.number); });
    return targets;
}

}  // namespace tavrolinux
