// What the library of the benchmarks knows: long lists of portals and targets, and a host of one
// adapter.
#pragma once

#include <cstdlib>
#include <string>

namespace bench {

inline std::size_t Count() {
    const char* const count = std::getenv("TAVRO_BENCH_COUNT");
    return count == nullptr ? 0 : std::strtoul(count, nullptr, 10);
}

inline std::string Number(std::size_t entry) {
    return std::to_string(entry);
}

inline std::string PortalAddress(std::size_t entry) {
    return "2001:db8::" + Number(entry % 10000) + ":" + Number(entry / 10000);
}

inline std::string PortalPort() {
    return "3260";
}

inline std::string TargetName(std::size_t entry) {
    return "iqn.2015-01.com.example:storage.disk" + Number(entry);
}

inline std::string TargetState() {
    return "Not connected";
}

inline std::string TargetDiscovery() {
    return "SendTargets";
}

inline constexpr const char* HostName = "bench-host";
inline constexpr const char* AdapterName = "Tavro CNA 4610K";
inline constexpr const char* PortNames[] = {"Port 1", "Port 2"};

// The functions of each port, the even numbers first, as they are listed.
struct Function {
    const char* protocol;
    unsigned number;
    const char* address;
    const char* key;
};
inline constexpr Function Functions[] = {
    {"Ethernet", 0, "00-00-00-00", "02-00-5E-10-00-00"},
    {"iSCSI", 2, "00-00-00-02", "02-00-5E-10-00-02"},
    {"FCoE", 4, "00-00-00-04", "20-00-02-00-5E-10-00-04"},
};
inline constexpr const char* SecondText = "000000000000";

inline std::wstring MessageText(unsigned id) {
    return L"#" + std::to_wstring(id);
}

}  // namespace bench
