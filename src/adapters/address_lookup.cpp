#include "adapters/address_lookup.h"

#include <algorithm>

#include "adapters/inventory.h"

namespace tavro {

std::optional<std::string> FindFunctionAddress(const std::string& keyText) {
    EntryCache cache;
    std::list<tavroapi::AdapterRecord> adapters;
    if (ReadHostName(cache) != CallOutcome::Done ||
        ReadAdapters(cache, adapters) != CallOutcome::Done) {
        return std::nullopt;
    }
    for (const tavroapi::AdapterRecord& adapter : adapters) {
        for (const std::string& portName : adapter.portNames) {
            PortFunctions functions;
            if (ReadPortFunctions(cache, adapter.name, portName, functions) != CallOutcome::Done) {
                continue;
            }
            const auto found = std::ranges::find(functions.addresses, keyText,
                                                 &tavroapi::FunctionAddress::keyText);
            if (found != functions.addresses.end()) {
                return found->addressText;
            }
        }
    }
    return std::nullopt;
}

}  // namespace tavro
