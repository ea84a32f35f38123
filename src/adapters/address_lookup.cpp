#include "adapters/address_lookup.h"

#include <algorithm>

namespace tavro {

std::optional<std::string> FindFunctionAddress(EntryCache& cache, const std::string& keyText) {
    std::list<tavroapi::AdapterRecord> adapters;
    if (ReadHostName(cache) != CallOutcome::Done ||
        ReadAdapters(cache, adapters) != CallOutcome::Done) {
        return std::nullopt;
    }
    for (const tavroapi::AdapterRecord& adapter : adapters) {
        for (const std::string& portName : adapter.portNames) {
            std::list<PortFunction> functions;
            if (ReadPortFunctions(cache, adapter.name, portName, functions) != CallOutcome::Done) {
                continue;
            }
            const auto found = std::ranges::find_if(functions, [&](const PortFunction& function) {
                return function.address.keyText == keyText;
            });
            if (found != functions.end()) {
                return found->address.addressText;
            }
        }
    }
    return std::nullopt;
}

}  // namespace tavro
