#include "twin/documents/document.h"

#include <array>
#include <chrono>

#include "library/platform/environment.h"
#include "library/text/text.h"
#include "platform/control_characters.h"
#include "platform/crash_dump.h"
#include "platform/input.h"
#include "platform/output.h"
#include "twin/exit_status.h"

namespace tavrohost {
namespace {

constexpr std::chrono::seconds LockPatience{10};

std::filesystem::path LockOf(std::filesystem::path file) {
    file += ".lock";
    return file;
}

std::string ReadStandardInputWhole() {
    std::string content;
    std::array<char, 65536> buffer{};
    while (const std::size_t count =
               tavro::platform::ReadStandardInput(buffer.data(), buffer.size())) {
        content.append(buffer.data(), count);
        if (content.size() > tavrolib::platform::LargestFile) {
            throw TroubleError("standard input: larger than 64 MiB");
        }
    }
    return content;
}

// A terminal gets each line by itself, so that the line ends remain its line ends.
bool WriteLinesToTerminal(std::string_view text) {
    const bool takesText = tavro::platform::StandardOutputIsUnicodeConsole();
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::wstring line = tavro::platform::MaskControlCharacters(
            std::wstring_view(tavrolib::WideFromUtf8(text.substr(0, end))));
        const bool written =
            takesText ? tavro::platform::WriteConsoleText(line)
                      : tavro::platform::WriteStandardOutput(tavrolib::Utf8FromWide(line));
        if (!written || (end != std::string_view::npos &&
                         !tavro::platform::WriteStandardOutput(tavro::platform::OutputLineEnd()))) {
            return false;
        }
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return true;
}

}  // namespace

std::filesystem::path PathOfDocument(const std::string& name) {
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

std::string ReadDocument(const std::string& name) {
    tavro::platform::ForbidCrashDumps();  // it may hold secrets
    if (name == StandardStream) {
        return ReadStandardInputWhole();
    }
    const std::filesystem::path path = PathOfDocument(name);
    auto content = tavrolib::platform::ReadWholeFile(path);
    if (!content) {
        throw TroubleError(name + ": there is no such file");
    }
    return *std::move(content);
}

void WriteDocument(const std::string& name, std::string_view content) {
    namespace platform = tavrolib::platform;
    if (name == StandardStream || platform::IsStandardOutput(PathOfDocument(name))) {
        WriteOutput(content);
    } else if (!platform::WriteToStream(PathOfDocument(name), content)) {
        LockedDocument(name).Replace(content);
    }
}

LockedDocument::LockedDocument(const std::string& name)
    : file_(tavrolib::platform::FileToReplace(PathOfDocument(name))),
      lock_(LockOf(file_), LockPatience, file_) {}

void LockedDocument::Replace(std::string_view content) const {
    tavrolib::platform::ReplaceContent(file_, content, tavrolib::platform::Readers::OwnerOnly);
}

void WriteOutput(std::string_view text) {
    const bool written = tavro::platform::StandardOutputIsTerminal()
                             ? WriteLinesToTerminal(text)
                             : tavro::platform::WriteStandardOutput(text);
    if (!written) {
        throw TroubleError("standard output cannot be written");
    }
}

void WriteDiagnostic(std::string_view text) {
    tavro::platform::WriteStandardError(tavrolib::WideFromUtf8(text));
}

void Complain(std::string_view sentence) {
    WriteDiagnostic("tavrohost: " + std::string(sentence) + "\n");
}

}  // namespace tavrohost
