#include <exception>

#include "library/session/session.h"
#include "tavroapi/exported_functions.h"

// The library's exported functions. Which of them a library file really exports is decided when it
// is linked, by a list of names (see library/CMakeLists.txt); visibility is given here because
// everything else is hidden. None lets an exception out.
namespace {

template <class Function>
std::uint32_t Guarded(const Function& function) noexcept {
    try {
        return function(tavrolib::ProcessSession());
    } catch (const std::exception& error) {
        return tavrolib::ProcessSession().NoteInternalError(error.what());
    } catch (...) {
        return tavrolib::ProcessSession().NoteInternalError("an unknown exception");
    }
}

}  // namespace

#if defined(__ELF__)
#define TAVRO_EXPORTED [[gnu::visibility("default")]]
#else
#define TAVRO_EXPORTED
#endif

extern "C" {

TAVRO_EXPORTED std::uint32_t TAVROAPI_Initialize(std::uint32_t debugFlag,
                                                 std::wstring* localeName) {
    return Guarded([&](auto& session) { return session.Initialize(debugFlag, localeName); });
}

TAVRO_EXPORTED std::uint32_t TAVROAPI_Uninitialize() {
    return Guarded([](auto& session) { return session.Uninitialize(); });
}

TAVRO_EXPORTED std::uint32_t TAVROAPI_DoOperation(std::uint32_t operation, std::string* request,
                                                  void* input, void* output) {
    return Guarded(
        [&](auto& session) { return session.DoOperation(operation, request, input, output); });
}

TAVRO_EXPORTED std::uint32_t TAVROAPI_GetLocalizeMessage(std::uint32_t messageId,
                                                         std::wstring* text) {
    return Guarded([&](auto& session) { return session.GetLocalizeMessage(messageId, text); });
}

TAVRO_EXPORTED std::uint32_t TAVROAPI_GetLastErrorMessage(tavroapi::ErrorRecord* error) {
    return Guarded([&](auto& session) { return session.GetLastErrorMessage(error); });
}

TAVRO_EXPORTED std::uint32_t TAVROAPI_GetHostName(std::string* hostName) {
    return Guarded([&](auto& session) { return session.GetHostName(hostName); });
}

TAVRO_EXPORTED std::uint32_t TAVROAPI_GetDiscoveredAdapters(
    std::list<tavroapi::AdapterRecord>* adapters) {
    return Guarded([&](auto& session) { return session.GetDiscoveredAdapters(adapters); });
}

TAVRO_EXPORTED std::uint32_t TAVROAPI_GetPortWWNs(
    std::string* adapterName, std::string* portName,
    std::list<tavroapi::FunctionAddress>* addresses,
    std::list<tavroapi::FunctionIdentity>* identities) {
    return Guarded([&](auto& session) {
        return session.GetPortWWNs(adapterName, portName, addresses, identities);
    });
}

TAVRO_EXPORTED std::uint32_t TAVROAPI_GetPartitionState(std::string* portIdentifier,
                                                        std::uint32_t* state) {
    return Guarded([&](auto& session) { return session.GetPartitionState(portIdentifier, state); });
}

TAVRO_EXPORTED std::uint32_t TAVROAPI_GetAdapterType(std::string* mac, std::string* typeText) {
    return Guarded([&](auto& session) { return session.GetAdapterType(mac, typeText); });
}

TAVRO_EXPORTED std::uint32_t TAVROAPI_GetAdapterPortNumber(std::string* mac,
                                                           std::uint32_t* portCount) {
    return Guarded([&](auto& session) { return session.GetAdapterPortNumber(mac, portCount); });
}

}  // extern "C"
