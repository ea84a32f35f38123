#include "linux/serve/operation.h"

#include <map>

namespace tavrolinux {

Outcome RefuseAmbiguous(const std::string& request, std::span<const Machine::Found> found) {
    std::wstring details = WideFromUtf8(request) + L':';
    for (const Machine::Found& one : found) {
        details += L' ' + WideFromUtf8(one.interface->name);
    }
    return Refused(Status::IdentifierAmbiguous,
                   L"Several functions of this host have this identifier.",
                   L"Give each of the interfaces in the details an address of its own.", details);
}

const Operation* FindOperation(std::uint32_t code) {
    static const std::map<std::uint32_t, const Operation*> byCode = [] {
        std::map<std::uint32_t, const Operation*> made;
        for (const auto rows :
             {EthernetPortOperations(), EthernetStatisticsOperations(), AdapterSettingsOperations(),
              TcpIpOperations(), InitiatorOperations(), IscsiPortOperations(),
              IscsiStorageOperations(), FcoeOperations(), OtherOperations()}) {
            for (const Operation& row : rows) {
                made.emplace(static_cast<std::uint32_t>(row.code), &row);
            }
        }
        return made;
    }();
    const auto found = byCode.find(code);
    return found == byCode.end() ? nullptr : found->second;
}

}  // namespace tavrolinux
