// A management library that lets exceptions out and writes where it should only read. What it does
// is told by the environment:
//   MISBEHAVING_CALLS   a file, to which the name of each entry point called is added as a line
//   MISBEHAVING_THROW   "Entry=type ..."; these entry points throw or end in worse ways, see
//                       `Misbehave`
//   MISBEHAVING_FAIL    "Entry ..."; these entry points return status 1
//   MISBEHAVING_COUNTS  "sent received"; what the iSCSI ping writes into its request and its result
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <thread>

#include "exceptions.h"
#include "tavroapi/entry_points.h"
#include "tavroapi/iscsi_records.h"

#if defined(_WIN32)
#define EXPORTED extern "C" [[gnu::dllexport]]
#else
#define EXPORTED extern "C" [[gnu::visibility("default")]]
#endif

namespace {

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

// The text behind "name=" in a list of words; empty for a word without "="; nothing when no word
// has that name.
std::optional<std::string> ValueIn(const std::string& list, const std::string& name) {
    std::istringstream words(list);
    for (std::string word; words >> word;) {
        const std::size_t equals = word.find('=');
        if (word.substr(0, equals) == name) {
            return equals == std::string::npos ? "" : word.substr(equals + 1);
        }
    }
    return std::nullopt;
}

// Ends in a way that is no exception, or throws.
void Misbehave(const std::string& type, const std::string& entry) {
    if (type == "crash") {
        std::abort();
    }
    if (type == "stubborn") {
        std::signal(SIGTERM, SIG_IGN);
    }
    if (type == "sleep" || type == "stubborn") {
        std::this_thread::sleep_for(std::chrono::minutes(5));
    }
    misbehaving::Throw(type, entry);
}

std::uint32_t Called(const std::string& entry) {
    std::ofstream(Variable("MISBEHAVING_CALLS"), std::ios::app) << entry << '\n';
    if (const auto type = ValueIn(Variable("MISBEHAVING_THROW"), entry)) {
        Misbehave(*type, entry);
    }
    return ValueIn(Variable("MISBEHAVING_FAIL"), entry) ? 1 : 0;
}

}  // namespace

EXPORTED std::uint32_t TAVROAPI_Initialize(std::uint32_t, std::wstring*) {
    return Called("Initialize");
}

EXPORTED std::uint32_t TAVROAPI_Uninitialize() {
    return Called("Uninitialize");
}

EXPORTED std::uint32_t TAVROAPI_DoOperation(std::uint32_t operation, std::string*, void* input,
                                            void* output) {
    constexpr auto Ping = static_cast<std::uint32_t>(tavroapi::OperationCode::PingFromIscsiPort);
    std::istringstream counts(Variable("MISBEHAVING_COUNTS"));
    if (operation == Ping) {
        counts >> static_cast<tavroapi::IscsiPingRequest*>(input)->count >>
            static_cast<tavroapi::IscsiPingResult*>(output)->received;
    }
    return Called("DoOperation");
}

EXPORTED std::uint32_t TAVROAPI_GetLocalizeMessage(std::uint32_t messageId, std::wstring* text) {
    *text = L"#" + std::to_wstring(messageId);
    return Called("GetLocalizeMessage");
}

EXPORTED std::uint32_t TAVROAPI_GetLastErrorMessage(tavroapi::ErrorRecord*) {
    return Called("GetLastErrorMessage");
}

EXPORTED std::uint32_t TAVROAPI_GetHostName(std::string*) {
    return Called("GetHostName");
}

// One adapter that the program supports, with a port that has no functions.
EXPORTED std::uint32_t TAVROAPI_GetDiscoveredAdapters(
    std::list<tavroapi::AdapterRecord>* adapters) {
    tavroapi::AdapterRecord adapter;
    adapter.name = "Tavro CNA 4610K";
    adapter.portNames = {"Port 1"};
    adapters->push_back(adapter);
    return Called("GetDiscoveredAdapters");
}

EXPORTED std::uint32_t TAVROAPI_GetPortWWNs(std::string*, std::string*,
                                            std::list<tavroapi::FunctionAddress>*,
                                            std::list<tavroapi::FunctionIdentity>*) {
    return Called("GetPortWWNs");
}

EXPORTED std::uint32_t TAVROAPI_GetPartitionState(std::string*, std::uint32_t* state) {
    *state = 1;
    return Called("GetPartitionState");
}

EXPORTED std::uint32_t TAVROAPI_GetAdapterType(std::string*, std::string* typeText) {
    *typeText = "CNA";
    return Called("GetAdapterType");
}

EXPORTED std::uint32_t TAVROAPI_GetAdapterPortNumber(std::string*, std::uint32_t* portCount) {
    *portCount = 0;
    return Called("GetAdapterPortNumber");
}

namespace {

template <class Entry>
constexpr bool Fits(typename Entry::Function* function) {
    return function != nullptr;
}

// Each function has the signature that the contract gives it.
static_assert(Fits<tavroapi::InitializeEntry>(TAVROAPI_Initialize));
static_assert(Fits<tavroapi::UninitializeEntry>(TAVROAPI_Uninitialize));
static_assert(Fits<tavroapi::DoOperationEntry>(TAVROAPI_DoOperation));
static_assert(Fits<tavroapi::GetLocalizeMessageEntry>(TAVROAPI_GetLocalizeMessage));
static_assert(Fits<tavroapi::GetLastErrorMessageEntry>(TAVROAPI_GetLastErrorMessage));
static_assert(Fits<tavroapi::GetHostNameEntry>(TAVROAPI_GetHostName));
static_assert(Fits<tavroapi::GetDiscoveredAdaptersEntry>(TAVROAPI_GetDiscoveredAdapters));
static_assert(Fits<tavroapi::GetPortWWNsEntry>(TAVROAPI_GetPortWWNs));
static_assert(Fits<tavroapi::GetPartitionStateEntry>(TAVROAPI_GetPartitionState));
static_assert(Fits<tavroapi::GetAdapterTypeEntry>(TAVROAPI_GetAdapterType));
static_assert(Fits<tavroapi::GetAdapterPortNumberEntry>(TAVROAPI_GetAdapterPortNumber));

}  // namespace
