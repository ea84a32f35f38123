#include <cstdint>
#include <exception>
#include <string>

#include "adapters/discovery.h"
#include "cli/command_line.h"
#include "cli/startup.h"
#include "console/console.h"
#include "dispatch.h"
#include "mgmt/library.h"
#include "mgmt/message.h"
#include "mgmt/text.h"
#include "platform/output.h"

namespace tavro {

namespace {

void ShowRestrictedStateNotice() {
    for (const MessageId id : {MessageId::RestrictedStateNotice1, MessageId::RestrictedStateNotice2,
                               MessageId::RestrictedStateNotice3, MessageId::RestrictedStateNotice4,
                               MessageId::RestrictedStateNotice5}) {
        ShowMessage(id);
    }
}

// The library owns the message texts, so its absence can be told only in the system's own words.
void ReportMissingLibrary() {
    platform::WriteStandardError(L"tavrocli: cannot load " + ToWide(tavroapi::LibraryFileName) +
                                 L": " + ManagementLibrary().FailureReason() + L"\n");
    ShowFailure(MessageId::LibraryMissing);
}

void RunCommand(const Invocation& invocation, std::int32_t adapterState) {
    const Command* const command = FindCommand(ParseCommandLine(invocation.arguments));
    if (command == nullptr) {
        return;
    }
    if (adapterState == RestrictedAdapterState) {
        switch (command->access) {
            case AccessClass::Blocked:
                ShowMessage(MessageId::CommandBlocked);
                return;
            case AccessClass::Warns:
                ShowRestrictedStateNotice();
                break;
            case AccessClass::Runs:
                break;
        }
    }
    command->handler(invocation);
}

void Run(Arguments arguments) {
    if (!ManagementLibrary().IsLoaded()) {
        ReportMissingLibrary();
        return;
    }
    if (!Initialize(EndsWithDebugSwitch(arguments) ? 1 : 0)) {
        ShowFailure(MessageId::InitializeFailed);
        return;
    }
    // Also when a handler is left by an exception.
    struct LibrarySession {
        LibrarySession() = default;
        ~LibrarySession() { Uninitialize(); }
        LibrarySession(const LibrarySession&) = delete;
        LibrarySession& operator=(const LibrarySession&) = delete;
    } const session;

    EntryCache cache;
    const std::int32_t adapterState = DiscoverAdapters(cache);
    RunCommand({arguments, cache}, adapterState);
}

}  // namespace

}  // namespace tavro

// The exit code is always 0: outcomes are told as text.
int main(int argc, char** argv) {
    tavro::platform::PrepareStandardStreams();
    std::wstring failure;
    try {
        tavro::Run({argv, static_cast<std::size_t>(argc)});
    } catch (const tavro::console::OutputLost&) {
        // A question that nobody would see: there is nobody to tell, either.
        return 0;
    } catch (const std::exception& error) {
        failure = L"tavrocli: " + tavro::ToWide(error.what()) + L"\n";
    }
    tavro::console::Flush();
    tavro::platform::WriteStandardError(failure);
    return 0;
}
