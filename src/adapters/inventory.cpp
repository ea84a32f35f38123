#include "adapters/inventory.h"

namespace tavro {

std::string HostName;

namespace {

template <class Entry, class... Arguments>
CallOutcome ResolveAndCall(typename Entry::Function*& cached, Arguments... arguments) {
    cached = ResolveEntryPoint<Entry>();
    return CallEntryPoint(cached, arguments...);
}

}  // namespace

CallOutcome ReadHostName(EntryCache& cache) {
    return ResolveAndCall<tavroapi::GetHostNameEntry>(cache.getHostName, &HostName);
}

CallOutcome ReadAdapters(EntryCache& cache, std::list<tavroapi::AdapterRecord>& adapters) {
    adapters.clear();
    return ResolveAndCall<tavroapi::GetDiscoveredAdaptersEntry>(cache.getDiscoveredAdapters,
                                                                &adapters);
}

CallOutcome ReadPortFunctions(EntryCache& cache, const std::string& adapterName,
                              const std::string& portName, PortFunctions& functions) {
    functions = {};
    std::string adapterKey = adapterName;
    std::string portKey = portName;
    return ResolveAndCall<tavroapi::GetPortWWNsEntry>(cache.getPortWWNs, &adapterKey, &portKey,
                                                      &functions.addresses, &functions.identities);
}

}  // namespace tavro
