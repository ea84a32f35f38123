#pragma once

#include <cstdint>
#include <list>
#include <string>

#include "simulator/call.h"
#include "simulator/host/host.h"
#include "simulator/outcome.h"
#include "tavroapi/inventory_records.h"

/// The queries about what the host has. Each fills its last argument.
namespace tavrosim {

Outcome GetHostName(const Host& host, std::string& hostName);

Outcome GetDiscoveredAdapters(const Host& host, std::list<tavroapi::AdapterRecord>& adapters);

/// The functions of the port in the order of their numbers; an unknown adapter or port is refused.
Outcome GetPortFunctions(const Host& host, const std::string& adapterName,
                         const std::string& portName, PortFunctions& functions);

Outcome GetPartitionState(const Host& host, const std::string& identifier, std::uint32_t& state);

Outcome GetAdapterType(const Host& host, const std::string& identifier, std::string& typeText);

Outcome GetAdapterPortNumber(const Host& host, const std::string& identifier,
                             std::uint32_t& portCount);

}  // namespace tavrosim
