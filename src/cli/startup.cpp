#include "cli/startup.h"

#include <string_view>

#include "mgmt/message.h"
#include "mgmt/operation.h"
#include "mgmt/text.h"
#include "platform/file.h"
#include "platform/locale.h"

namespace tavro {

namespace {

platform::RegularFile DebugLog;

constexpr std::size_t LocaleBufferLength = 30;

}  // namespace

bool EndsWithDebugSwitch(Arguments arguments) {
    return !arguments.empty() && arguments.back() == DebugSwitch;
}

std::wstring LocaleText(const std::string& localeName) {
    return ToWide(std::string_view(localeName).substr(0, LocaleBufferLength));
}

std::wstring GetLanguage() {
    return LocaleText(platform::UserLocaleName());
}

void OpenDebugLog() {
    if (!DebugLog.IsOpen()) {
        DebugLog = platform::RegularFile::OpenForAppend(L"tavrocli.log");
    }
}

bool Initialize(std::uint8_t debugFlag) {
    OpenDebugLog();
    std::wstring localeText = GetLanguage();
    const CallOutcome outcome = CallEntryPoint(ResolveEntryPoint<tavroapi::InitializeEntry>(),
                                               std::uint32_t{debugFlag}, &localeText);
    if (outcome == CallOutcome::Failed) {
        ShowLastError();
    }
    return outcome == CallOutcome::Done;
}

void Uninitialize() {
    CallEntryPoint(ResolveEntryPoint<tavroapi::UninitializeEntry>());
}

}  // namespace tavro
