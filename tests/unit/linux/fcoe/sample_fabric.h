#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "linux/inventory/fibre_channel.h"
#include "linux/serve/serve.h"
#include "linux/system/failure.h"
#include "unit/linux/tree.h"

// A host with FCoE, as the kernel shows it in sysfs: an interface with a VLAN for storage, on that
// a controller with two forwarders and the host 3, and two targets.
namespace tavrolinux_test {

inline const std::string PortOfHost = "10:00:02:00:5E:10:00:04";
inline const std::string FirstTarget = "50:00:02:00:5E:40:00:01";
inline const std::string SecondTarget = "50:00:02:00:5E:40:00:02";

class SampleFabric {
  public:
    SampleFabric() {
        MakeInterfaces();
        MakeHost();
        MakeForwarder("fcf_4", "0", "0x2001020000000001", "02:00:5e:fc:00:09");
        MakeForwarder("fcf_11", "1", "0x100002005efc0001", "02:00:5e:fc:00:01");
        MakeTarget("rport-3:0-10", "0x500002005e400002", "0x010203", "7");
        MakeTarget("rport-3:0-2", "0x500002005e400001", "0x010202", "5");
    }

    // The interface as the inventory knows it once it has looked for its host.
    tavrolinux::Interface Port(const std::string& name = "eth0") const {
        tavrolinux::Interface port;
        port.index = 2;
        port.name = name;
        port.key = "02-00-5E-10-00-00";
        port.driver = "sampledrv";
        port.folder = tree.Roots().sys / "class/net" / name;
        TakeFibreChannelHost(tree.Roots(), port);
        return port;
    }

    // Serves an operation on the host's function.
    template <tavroapi::OperationCode Code, class Output>
    tavrolib::Outcome Serve(void* input, Output& output,
                            const std::string& request = PortOfHost) const {
        const tavrolinux::Machine machine(tree.Roots(), {{"Example adapter", {Port()}}});
        tavrolinux::StateStore state(tree.Roots());
        const auto* const operation = tavrolinux::FindOperation(static_cast<std::uint32_t>(Code));
        try {
            return operation->serve({machine, state}, request, input, &output);
        } catch (const tavrolinux::SystemFailure& failure) {
            return tavrolinux::RefusalOf(failure);
        }
    }

    Tree tree;
    const std::string nic = "sys/devices/pci0000:00/0000:03:00.0";
    const std::string controller = nic + "/net/eth0.1002/ctlr_0";
    const std::string host = controller + "/host3";
    const std::string attributes = host + "/fc_host/host3";

    // Writes attributes of one folder, each with a line end as the kernel does.
    void Files(const std::string& folder,
               const std::vector<std::pair<std::string_view, std::string_view>>& files) const {
        for (const auto& [name, text] : files) {
            tree.File(folder + '/' + std::string(name), std::string(text) + '\n');
        }
    }

    // Lets a class list a folder, and the folder lead to what it is about.
    void List(const std::string& className, const std::string& folder) const {
        tree.Link(
            "sys/class/" + className + '/' + std::filesystem::path(folder).filename().string(),
            tree.Placed(folder));
        if (className != "net") {
            tree.Link(folder + "/device", "../..");
        }
    }

    void MakeTarget(const std::string& name, std::string_view wwn, std::string_view fcid,
                    std::string_view scsiTarget, std::string_view roles = "FCP Target",
                    std::string_view state = "Online") const {
        const std::string folder = host + '/' + name + "/fc_remote_ports/" + name;
        Files(folder, {{"node_name", "0x500002005e4000ff"},
                       {"port_name", wwn},
                       {"port_id", fcid},
                       {"roles", roles},
                       {"port_state", state},
                       {"supported_classes", "Class 3"},
                       {"maxframe_size", "2048 bytes"},
                       {"dev_loss_tmo", "30"},
                       {"scsi_target_id", scsiTarget}});
        List("fc_remote_ports", folder);
    }

  private:
    void MakeInterfaces() const {
        for (const char* name : {"eth0", "eth0.1002", "eth1"}) {
            const std::string folder = nic + "/net/" + name;
            tree.File(folder + "/ifindex", "2\n");
            List("net", folder);
        }
        tree.Link(nic + "/net/eth0/device", "../..");
        tree.File(nic + "/net/eth0.1002/uevent", "DEVTYPE=vlan\nINTERFACE=eth0.1002\nIFINDEX=4\n");
        tree.Link(nic + "/net/eth0.1002/lower_eth0", "../eth0");
    }

    void MakeHost() const {
        std::string types;
        for (int octet = 0; octet < 32; ++octet) {
            types += octet == 2 || octet == 7 ? "0x01 " : "0x00 ";
        }
        Files(attributes, {{"node_name", "0x200002005e100004"},
                           {"port_name", "0x100002005e100004"},
                           {"fabric_name", "0x100002005efc0001"},
                           {"port_id", "0x010300"},
                           {"port_state", "Online"},
                           {"port_type", "NPort (fabric via point-to-point)"},
                           {"speed", "10 Gbit"},
                           {"supported_speeds", "1 Gbit, 10 Gbit"},
                           {"supported_classes", "Class 3"},
                           {"supported_fc4s", types},
                           {"maxframe_size", "2112 bytes"},
                           {"symbolic_name", "sampledrv v1.2 over eth0.1002"},
                           {"serial_number", "SN0042"},
                           {"model", "Model 7"},
                           {"hardware_version", "rev 3"},
                           {"driver_version", "1.2"},
                           {"firmware_version", "8.30"},
                           {"optionrom_version", "4.5"}});
        List("fc_host", attributes);
        tree.File(host + "/scsi_host/host3/proc_name", "samplefcoe\n");
        tree.File(controller + "/lesb/miss_fka", "6\n");
        tree.File(controller + "/lesb/vlink_fail", "4\n");
    }

    void MakeForwarder(const std::string& name, std::string_view selected,
                       std::string_view switchName, std::string_view mac) const {
        Files(controller + '/' + name, {{"fabric_name", "0x100002005efc0001"},
                                        {"switch_name", switchName},
                                        {"priority", "128"},
                                        {"selected", selected},
                                        {"fc_map", "0xefc00"},
                                        {"vfid", "0"},
                                        {"vlan_id", "1002"},
                                        {"mac", mac}});
    }
};

}  // namespace tavrolinux_test
