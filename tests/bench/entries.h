// The portals and targets that are listed, and how large a list is.
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

inline std::wstring MessageText(unsigned id) {
    return L"#" + std::to_wstring(id);
}

}  // namespace bench
