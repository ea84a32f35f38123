#include "twin/run/library_source.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "library/json/place.h"
#include "library/platform/environment.h"
#include "library/platform/file.h"
#include "library/text/text.h"
#include "platform/shared_library.h"
#include "tavroapi/exported_functions.h"
#include "twin/documents/document.h"
#include "twin/platform/environment.h"
#include "twin/run/secret_stand_in.h"
#include "twin/run/secrets.h"

namespace tavrohost {
namespace {

using tavro::platform::SharedLibrary;

constexpr const char* HostVariable = "TAVROSIM_HOST";

// The secrets of the twin as it was at first; nothing while nobody has asked for them.
std::optional<std::set<std::string>> secretsOfTwin;

// A file that cannot be read is one that the simulator refuses.
std::set<std::string> SecretsOfHostFile() {
    try {
        const auto file = tavrolib::platform::PathVariable(HostVariable);
        const auto text = file ? tavrolib::platform::ReadWholeFile(*file) : std::nullopt;
        return text ? SecretsIn(tavrolib::ParseJson(*text)) : std::set<std::string>();
    } catch (const tavrolib::platform::FileError&) {
        return {};
    } catch (const tavrolib::ShapeError&) {
        return {};
    }
}

// A twin lives in a file, which gets none of the secrets that the command has.
std::uint32_t DoOperationOnTwin(std::uint32_t code, std::string* request, void* input,
                                void* output) {
    if (TakesSecrets(code)) {
        if (!secretsOfTwin) {
            secretsOfTwin = SecretsOfHostFile();
        }
        ReplaceSecrets(code, input, *secretsOfTwin);
    }
    return TAVROAPI_DoOperation(code, request, input, output);
}

struct Linked {
    std::string_view name;
    void* entryPoint;
};

template <class Entry>
Linked LinkedAs(typename Entry::Function& function) {
    return {Entry::Name, reinterpret_cast<void*>(&function)};
}

// The simulator that is part of this program.
const Linked LinkedEntryPoints[] = {
    LinkedAs<tavroapi::InitializeEntry>(TAVROAPI_Initialize),
    LinkedAs<tavroapi::UninitializeEntry>(TAVROAPI_Uninitialize),
    LinkedAs<tavroapi::DoOperationEntry>(DoOperationOnTwin),
    LinkedAs<tavroapi::GetLocalizeMessageEntry>(TAVROAPI_GetLocalizeMessage),
    LinkedAs<tavroapi::GetLastErrorMessageEntry>(TAVROAPI_GetLastErrorMessage),
    LinkedAs<tavroapi::GetHostNameEntry>(TAVROAPI_GetHostName),
    LinkedAs<tavroapi::GetDiscoveredAdaptersEntry>(TAVROAPI_GetDiscoveredAdapters),
    LinkedAs<tavroapi::GetPortWWNsEntry>(TAVROAPI_GetPortWWNs),
    LinkedAs<tavroapi::GetPartitionStateEntry>(TAVROAPI_GetPartitionState),
    LinkedAs<tavroapi::GetAdapterTypeEntry>(TAVROAPI_GetAdapterType),
    LinkedAs<tavroapi::GetAdapterPortNumberEntry>(TAVROAPI_GetAdapterPortNumber),
};

void PlayHost(const std::filesystem::path& hostFile) {
    for (const char* const name : {"TAVROSIM_SCRIPT", "TAVROSIM_TRACE", "TAVROSIM_TRACE_SECRETS",
                                   "TAVROSIM_TRACE_OUTPUTS"}) {
        platform::UnsetVariable(name);
    }
    platform::SetVariable(HostVariable, hostFile);
    secretsOfTwin.reset();
}

tavro::LibrarySource LinkedSource() {
    return {.failureReason = {}, .find = [](const char* name) -> void* {
                const auto* const found = std::ranges::find(LinkedEntryPoints, name, &Linked::name);
                return found == std::end(LinkedEntryPoints) ? nullptr : found->entryPoint;
            }};
}

constexpr std::pair<LibraryChoice::Kind, const char*> LibraryKinds[] = {
    {LibraryChoice::Kind::Installed, "installed"},
    {LibraryChoice::Kind::File, "file"},
    {LibraryChoice::Kind::Twin, "twin"},
};

}  // namespace

tavro::LibrarySource SourceOf(const LibraryChoice& choice) {
    switch (choice.kind) {
        case LibraryChoice::Kind::File:
            return tavro::SourceOf(SharedLibrary::LoadFrom(choice.path));
        case LibraryChoice::Kind::Twin:
            PlayHost(choice.path);
            return LinkedSource();
        case LibraryChoice::Kind::Installed:
            break;
    }
    return tavro::SourceOf(SharedLibrary::Load(tavroapi::LibraryFileName));
}

tavrolib::Json JsonOf(const LibraryChoice& library) {
    for (const auto& [kind, name] : LibraryKinds) {
        if (kind == library.kind) {
            const std::u8string path = library.path.u8string();
            return {{"kind", name},
                    {"path", tavrolib::Utf8FromBytes(std::string(path.begin(), path.end()))}};
        }
    }
    return {};
}

LibraryChoice LibraryFrom(const tavrolib::Json& json) {
    LibraryChoice library;
    for (const auto& [kind, name] : LibraryKinds) {
        if (json.at("kind") == name) {
            library.kind = kind;
        }
    }
    library.path = PathOfDocument(tavrolib::BytesFromUtf8(json.at("path").get<std::string>()));
    return library;
}

}  // namespace tavrohost
