#include "program.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "adapters/discovery.h"
#include "cli/command_line.h"
#include "cli/invocation.h"
#include "cli/startup.h"
#include "console/console.h"
#include "dispatch.h"
#include "mgmt/library.h"
#include "mgmt/message.h"
#include "mgmt/text.h"
#include "platform/arguments.h"
#include "platform/output.h"
#include "tavroapi/codes.h"

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
    platform::WriteStandardError(L"tavrocli: cannot load " + ManagementLibrary().failureReason +
                                 L"\n");
    ShowFailure(MessageId::LibraryMissing);
}

void RunCommand(Arguments arguments, EntryCache& cache, std::int32_t adapterState) {
    const Command* const command = FindCommand(ParseCommandLine(arguments, Commands()));
    if (command == nullptr) {
        return;
    }
    if (adapterState == tavroapi::RestrictedAdapterState) {
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
    command->handler({*command, PortIdentifierOf(*command), arguments, cache});
}

// Whether the library is there and initialized; if not, that is told.
bool Start(Arguments arguments) {
    if (!ManagementLibrary().failureReason.empty()) {
        ReportMissingLibrary();
        return false;
    }
    if (!Initialize(EndsWithDebugSwitch(arguments) ? 1 : 0)) {
        ShowFailure(MessageId::InitializeFailed);
        return false;
    }
    return true;
}

void DiscoverAndRun(Arguments arguments) {
    EntryCache cache;
    const std::int32_t adapterState = DiscoverAdapters(cache);
    RunCommand(arguments, cache, adapterState);
}

// One line, whatever the text.
std::wstring FailureLine(std::string_view text) {
    std::wstring line = L"tavrocli: " + ToWide(text);
    std::ranges::replace_if(
        line, [](wchar_t character) { return character == L'\r' || character == L'\n'; }, L' ');
    return line + L'\n';
}

// Takes a step and returns the line that tells of the exception that ended it; empty when there is
// none to tell of. The library is not to let exceptions out, but if it does, of whatever type, that
// is how they end.
template <class Step>
std::wstring FailureOf(const Step& step) {
    try {
        step();
    } catch (const console::CommandAbandoned&) {
        // Whoever abandons a command has told why, or there is nobody to tell.
    } catch (const std::exception& error) {
        const char* const text = error.what();
        return FailureLine(text == nullptr ? "" : text);
    } catch (...) {
        return FailureLine("an exception of an unknown type");
    }
    return {};
}

// The line for an argument that did not arrive as it was typed, which must not be acted on.
std::wstring RefusedArgument(std::size_t position) {
    return L"tavrocli: argument " + std::to_wstring(position) +
           L" holds a character that the system's code page lacks; nothing was done\n";
}

// Returns the line that tells of the first exception, for standard error; empty without one.
std::wstring Run(Arguments arguments) {
    bool isStarted = false;
    std::wstring failure = FailureOf([&] { isStarted = Start(arguments); });
    if (isStarted) {
        failure = FailureOf([&] { DiscoverAndRun(arguments); });
        // Also when a handler was left by an exception.
        const std::wstring secondFailure = FailureOf(Uninitialize);
        if (failure.empty()) {
            failure = secondFailure;
        }
    }
    console::Flush();
    return failure;
}

}  // namespace

std::wstring RunCommandLine(int count, const char* const* values) {
    std::wstring told;
    const std::wstring failure = FailureOf([&] {
        const platform::ProcessArguments arguments(count, values);
        const auto refused = arguments.NotRepresentable();
        told = refused ? RefusedArgument(*refused) : Run(arguments.Values());
    });
    return failure.empty() ? told : failure;
}

}  // namespace tavro
