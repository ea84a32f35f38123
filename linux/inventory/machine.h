#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/calls/refusals.h"
#include "linux/netlink/links.h"
#include "linux/system/roots.h"

// The adapters of the machine, their ports and the functions of these, as they were found when the
// library was initialized. What can change is read anew by each operation.
namespace tavrolinux {

using tavrolib::FunctionKind;

// Where an interface is found on the PCI bus.
struct PciPlace {
    std::string slot;              // domain, bus and device: "0000:03:00"
    std::uint32_t function = 0;    // the figure behind the point
    std::filesystem::path device;  // its folder in sysfs

    // As the bus writes it: "0000:03:00.1".
    std::string Text() const { return slot + '.' + std::to_string(function); }
};

// A network interface that is a port: it has an Ethernet and an iSCSI function, and an FCoE
// function where the kernel has a Fibre Channel host on it.
struct Interface {
    std::int32_t index = 0;
    std::string name;
    std::string key;     // the MAC that requests name its functions by: "02-00-5E-10-00-00"
    std::string driver;  // of the kernel
    std::filesystem::path folder;  // in sysfs; empty where sysfs does not show it
    std::optional<PciPlace> pci;
    std::uint32_t devicePort = 0;       // among the ports of one PCI function
    std::uint32_t place = 0;            // among the ports of its adapter, from 0
    std::optional<std::string> fcHost;  // the name of its Fibre Channel host: "host3"
    std::string portWwn;                // of that: "10:00:02:00:5E:10:00:04"; empty without one
    std::string nodeWwn;
};

struct Adapter {
    std::string name;
    std::vector<Interface> ports;
};

class Machine {
  public:
    // Looks at the machine. Throws SystemFailure.
    static Machine Read(const Roots& roots);

    const Roots& SystemRoots() const { return roots_; }
    const std::vector<Adapter>& Adapters() const { return adapters_; }

    // The adapter of that name; null when there is none.
    const Adapter* FindAdapter(std::string_view name) const;

    // A function and what it belongs to; several where their keys are the same.
    struct Found {
        const Adapter* adapter = nullptr;
        const Interface* interface = nullptr;
    };
    std::vector<Found> Find(std::string_view identifier, FunctionKind kind) const;

    // For tests: a machine that has these adapters, whose ports are numbered here.
    Machine(Roots roots, std::vector<Adapter> adapters);
    Machine(Machine&&) = default;
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    Machine& operator=(Machine&&) = default;
    ~Machine() = default;

  private:
    Roots roots_;
    std::vector<Adapter> adapters_;
    std::map<std::string, const Adapter*, std::less<>> byName_;
    std::multimap<std::string, Found, std::less<>> byMac_;
    std::multimap<std::string, Found, std::less<>> byWwn_;
};

// The name of a port by its place: "Port 1".
std::string PortName(std::uint32_t place);

// An address as requests and listings write it: "02-00-5E-10-00-00".
std::string MacText(const EthernetAddress& address);

}  // namespace tavrolinux
