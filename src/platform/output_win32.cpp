#include <windows.h>

#include <algorithm>
#include <string>

#include "platform/control_characters.h"
#include "platform/encoding.h"
#include "platform/output.h"

namespace tavro::platform {
namespace {

// The standard stream's handle; null when the process has none.
HANDLE StreamHandle(DWORD stream) {
    const HANDLE handle = GetStdHandle(stream);
    return handle == INVALID_HANDLE_VALUE ? nullptr : handle;
}

bool IsConsole(HANDLE handle) {
    DWORD mode = 0;
    return handle != nullptr && GetConsoleMode(handle, &mode) != 0;
}

bool WriteBytes(HANDLE handle, std::string_view bytes) {
    constexpr std::size_t LargestWrite = 1U << 20U;
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(bytes.size(), LargestWrite));
        if (handle == nullptr || WriteFile(handle, bytes.data(), size, &written, nullptr) == 0 ||
            written == 0) {
            return false;
        }
        bytes.remove_prefix(written);
    }
    return true;
}

bool WriteText(HANDLE console, std::wstring_view text) {
    // Consoles of older systems refuse writes that are longer than their shared buffer.
    constexpr std::size_t LargestWrite = 8192;
    while (!text.empty()) {
        std::size_t size = std::min(text.size(), LargestWrite);
        if (size < text.size() && IS_HIGH_SURROGATE(text[size - 1])) {
            --size;
        }
        DWORD written = 0;
        if (console == nullptr ||
            WriteConsoleW(console, text.data(), static_cast<DWORD>(size), &written, nullptr) == 0 ||
            written == 0) {
            return false;
        }
        text.remove_prefix(written);
    }
    return true;
}

}  // namespace

// A broken pipe is an error anyway.
void PrepareStandardStreams() {
    for (const DWORD stream : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
        const HANDLE handle = StreamHandle(stream);
        DWORD flags = 0;
        if (!IsConsole(handle) && GetHandleInformation(handle, &flags) == 0) {
            SetStdHandle(stream, nullptr);
        }
    }
}

bool WriteStandardOutput(std::string_view bytes) {
    return WriteBytes(StreamHandle(STD_OUTPUT_HANDLE), bytes);
}

bool StandardOutputIsTerminal() {
    return IsConsole(StreamHandle(STD_OUTPUT_HANDLE));
}

bool StandardErrorIsTerminal() {
    return IsConsole(StreamHandle(STD_ERROR_HANDLE));
}

bool StandardOutputIsUnicodeConsole() {
    return StandardOutputIsTerminal();
}

bool WriteConsoleText(std::wstring_view text) {
    return WriteText(StreamHandle(STD_OUTPUT_HANDLE), text);
}

unsigned OutputCodePage() {
    const UINT codePage = GetConsoleOutputCP();
    return codePage == 0 ? GetACP() : codePage;
}

std::string_view OutputLineEnd() {
    return "\r\n";
}

void WriteStandardError(std::wstring_view text) {
    const HANDLE handle = StreamHandle(STD_ERROR_HANDLE);
    const bool isConsole = IsConsole(handle);
    std::wstring translated;
    for (const wchar_t unit : isConsole ? MaskControlCharacters(text) : std::wstring(text)) {
        if (unit == L'\n') {
            translated += L'\r';
        }
        translated += unit;
    }
    if (isConsole) {
        WriteText(handle, translated);
    } else {
        WriteBytes(handle, EncodeText(translated, OutputCodePage()));
    }
}

}  // namespace tavro::platform
