#include <exception>
#include <type_traits>

#include "simulator/session.h"
#include "tavroapi/entry_points.h"

/// The library's exported functions. Which of them a library file really exports is decided when it
/// is linked, by a list of names (see CMakeLists.txt); visibility is given here because everything
/// else is hidden.
namespace {

template <class Function>
std::uint32_t Guarded(const Function& function) noexcept {
    try {
        return function(tavrosim::ProcessSession());
    } catch (const std::exception& error) {
        return tavrosim::ProcessSession().NoteInternalError(error.what());
    } catch (...) {
        return tavrosim::ProcessSession().NoteInternalError("an unknown exception");
    }
}

}  // namespace

#if defined(__ELF__)
#define TAVROSIM_EXPORTED [[gnu::visibility("default")]]
#else
#define TAVROSIM_EXPORTED
#endif

extern "C" {

TAVROSIM_EXPORTED std::uint32_t TAVROAPI_Initialize(std::uint32_t debugFlag,
                                                    std::wstring* localeName) noexcept {
    return Guarded([&](auto& session) { return session.Initialize(debugFlag, localeName); });
}

TAVROSIM_EXPORTED std::uint32_t TAVROAPI_Uninitialize() noexcept {
    return Guarded([](auto& session) { return session.Uninitialize(); });
}

TAVROSIM_EXPORTED std::uint32_t TAVROAPI_DoOperation(std::uint32_t operation, std::string* request,
                                                     void* input, void* output) noexcept {
    return Guarded(
        [&](auto& session) { return session.DoOperation(operation, request, input, output); });
}

TAVROSIM_EXPORTED std::uint32_t TAVROAPI_GetLocalizeMessage(std::uint32_t messageId,
                                                            std::wstring* text) noexcept {
    return Guarded([&](auto& session) { return session.GetLocalizeMessage(messageId, text); });
}

TAVROSIM_EXPORTED std::uint32_t TAVROAPI_GetLastErrorMessage(
    tavroapi::ErrorRecord* error) noexcept {
    return Guarded([&](auto& session) { return session.GetLastErrorMessage(error); });
}

TAVROSIM_EXPORTED std::uint32_t TAVROAPI_GetHostName(std::string* hostName) noexcept {
    return Guarded([&](auto& session) { return session.GetHostName(hostName); });
}

TAVROSIM_EXPORTED std::uint32_t TAVROAPI_GetDiscoveredAdapters(
    std::list<tavroapi::AdapterRecord>* adapters) noexcept {
    return Guarded([&](auto& session) { return session.GetDiscoveredAdapters(adapters); });
}

TAVROSIM_EXPORTED std::uint32_t TAVROAPI_GetPortWWNs(
    std::string* adapterName, std::string* portName,
    std::list<tavroapi::FunctionAddress>* addresses,
    std::list<tavroapi::FunctionIdentity>* identities) noexcept {
    return Guarded([&](auto& session) {
        return session.GetPortWWNs(adapterName, portName, addresses, identities);
    });
}

TAVROSIM_EXPORTED std::uint32_t TAVROAPI_GetPartitionState(std::string* portIdentifier,
                                                           std::uint32_t* state) noexcept {
    return Guarded([&](auto& session) { return session.GetPartitionState(portIdentifier, state); });
}

TAVROSIM_EXPORTED std::uint32_t TAVROAPI_GetAdapterType(std::string* mac,
                                                        std::string* typeText) noexcept {
    return Guarded([&](auto& session) { return session.GetAdapterType(mac, typeText); });
}

TAVROSIM_EXPORTED std::uint32_t TAVROAPI_GetAdapterPortNumber(std::string* mac,
                                                              std::uint32_t* portCount) noexcept {
    return Guarded([&](auto& session) { return session.GetAdapterPortNumber(mac, portCount); });
}

}  // extern "C"

namespace {

// Each function has the signature that the contract gives it.
template <class Entry, class Function>
constexpr bool Fits = std::is_convertible_v<Function*, typename Entry::Function*>;

static_assert(Fits<tavroapi::InitializeEntry, decltype(TAVROAPI_Initialize)>);
static_assert(Fits<tavroapi::UninitializeEntry, decltype(TAVROAPI_Uninitialize)>);
static_assert(Fits<tavroapi::DoOperationEntry, decltype(TAVROAPI_DoOperation)>);
static_assert(Fits<tavroapi::GetLocalizeMessageEntry, decltype(TAVROAPI_GetLocalizeMessage)>);
static_assert(Fits<tavroapi::GetLastErrorMessageEntry, decltype(TAVROAPI_GetLastErrorMessage)>);
static_assert(Fits<tavroapi::GetHostNameEntry, decltype(TAVROAPI_GetHostName)>);
static_assert(Fits<tavroapi::GetDiscoveredAdaptersEntry, decltype(TAVROAPI_GetDiscoveredAdapters)>);
static_assert(Fits<tavroapi::GetPortWWNsEntry, decltype(TAVROAPI_GetPortWWNs)>);
static_assert(Fits<tavroapi::GetPartitionStateEntry, decltype(TAVROAPI_GetPartitionState)>);
static_assert(Fits<tavroapi::GetAdapterTypeEntry, decltype(TAVROAPI_GetAdapterType)>);
static_assert(Fits<tavroapi::GetAdapterPortNumberEntry, decltype(TAVROAPI_GetAdapterPortNumber)>);

}  // namespace
