#include "mgmt/library.h"

#include <memory>
#include <optional>
#include <utility>

namespace tavro {

namespace {

std::optional<LibrarySource>& InUse() {
    static std::optional<LibrarySource> source;
    return source;
}

}  // namespace

LibrarySource SourceOf(platform::SharedLibrary library) {
    std::wstring reason = library.FailureReason();
    const auto kept = std::make_shared<platform::SharedLibrary>(std::move(library));
    return {.failureReason = std::move(reason),
            .find = [kept](const char* name) { return kept->Resolve(name); }};
}

const LibrarySource& ManagementLibrary() {
    if (!InUse()) {
        InUse() = SourceOf(platform::SharedLibrary::Load(tavroapi::LibraryFileName));
    }
    return *InUse();
}

void UseLibrary(LibrarySource source) {
    InUse() = std::move(source);
}

}  // namespace tavro
