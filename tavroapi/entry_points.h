#pragma once

#include <cstdint>
#include <list>
#include <string>

#include "tavroapi/inventory_records.h"

// The exported functions of the management library. Each type names one entry point and its
// signature; every function returns a 32-bit status, 0 for success. Arguments travel by address,
// owned by the caller, and no entry point keeps them; none lets an exception out. Both sides are
// built with the same standard library, since they touch the same strings and lists.
namespace tavroapi {

// The file name under which the library is loaded, on every platform.
inline constexpr const char* LibraryFileName = "tavro.dll";

// Called once, before anything else: debug flag (0 or 1) and the user's locale name.
struct InitializeEntry {
    static constexpr const char* Name = "TAVROAPI_Initialize";
    using Function = std::uint32_t(std::uint32_t debugFlag, std::wstring* localeName);
};

// Called once, at the end.
struct UninitializeEntry {
    static constexpr const char* Name = "TAVROAPI_Uninitialize";
    using Function = std::uint32_t();
};

// Performs one operation: code, request text (a port identifier, or empty for the host), input
// record or null, result record or null. Which records an operation takes is told by
// `OperationRecords`.
struct DoOperationEntry {
    static constexpr const char* Name = "TAVROAPI_DoOperation";
    using Function = std::uint32_t(std::uint32_t operation, std::string* request, void* input,
                                   void* output);
};

// Fills in the localized text of a message.
struct GetLocalizeMessageEntry {
    static constexpr const char* Name = "TAVROAPI_GetLocalizeMessage";
    using Function = std::uint32_t(std::uint32_t messageId, std::wstring* text);
};

// Describes the most recent failure.
struct GetLastErrorMessageEntry {
    static constexpr const char* Name = "TAVROAPI_GetLastErrorMessage";
    using Function = std::uint32_t(ErrorRecord* error);
};

// Fills in the host's name.
struct GetHostNameEntry {
    static constexpr const char* Name = "TAVROAPI_GetHostName";
    using Function = std::uint32_t(std::string* hostName);
};

// Fills in the host's adapters.
struct GetDiscoveredAdaptersEntry {
    static constexpr const char* Name = "TAVROAPI_GetDiscoveredAdapters";
    using Function = std::uint32_t(std::list<AdapterRecord>* adapters);
};

// Fills in the functions of one port of one adapter (adapter name, port name): two lists of equal
// length and order.
struct GetPortWWNsEntry {
    static constexpr const char* Name = "TAVROAPI_GetPortWWNs";
    using Function = std::uint32_t(std::string* adapterName, std::string* portName,
                                   std::list<FunctionAddress>* addresses,
                                   std::list<FunctionIdentity>* identities);
};

// Fills in the partition state (1, 2 or 3) of the port with the given identifier.
struct GetPartitionStateEntry {
    static constexpr const char* Name = "TAVROAPI_GetPartitionState";
    using Function = std::uint32_t(std::string* portIdentifier, std::uint32_t* state);
};

// Fills in the type text, such as "CNA" or "Ethernet", of the adapter that owns the given MAC.
struct GetAdapterTypeEntry {
    static constexpr const char* Name = "TAVROAPI_GetAdapterType";
    using Function = std::uint32_t(std::string* mac, std::string* typeText);
};

// Fills in the number of ports of the adapter that owns the given MAC.
struct GetAdapterPortNumberEntry {
    static constexpr const char* Name = "TAVROAPI_GetAdapterPortNumber";
    using Function = std::uint32_t(std::string* mac, std::uint32_t* portCount);
};

}  // namespace tavroapi
