#include <windows.h>

#include <algorithm>
#include <array>
#include <string>

#include "platform/encoding.h"
#include "platform/input.h"

namespace tavro::platform {
namespace {

// The largest number of bytes that one UTF-16 unit becomes in any code page.
constexpr std::size_t BytesPerUnit = 4;

// What is known about the console's input between two reads.
struct ConsoleInput {
    bool atLineStart = true;
    // The first half of a surrogate pair whose second half has not been read yet; 0 if none.
    wchar_t heldHalf = 0;
};

unsigned InputCodePage() {
    const UINT codePage = GetConsoleCP();
    return codePage == 0 ? GetACP() : codePage;
}

// Reads units of the line being typed; 0 when the console is gone.
DWORD ReadUnits(HANDLE console, wchar_t* units, std::size_t size) {
    while (true) {
        DWORD count = 0;
        SetLastError(ERROR_SUCCESS);
        if (ReadConsoleW(console, units, static_cast<DWORD>(size), &count, nullptr) == 0) {
            return 0;
        }
        // Ctrl-C breaks the read off a moment before it ends the program.
        if (count > 0 || GetLastError() != ERROR_OPERATION_ABORTED) {
            return count;
        }
        Sleep(50);
    }
}

std::size_t ReadTypedText(HANDLE console, char* buffer, std::size_t size) {
    static ConsoleInput state;
    constexpr wchar_t ControlZ = 0x1A;
    std::array<wchar_t, 1024> units{};
    const std::size_t room = std::min(units.size(), size / BytesPerUnit) - 1;
    std::wstring typed;
    do {
        const DWORD count = ReadUnits(console, units.data(), room);
        if (count == 0 || (state.atLineStart && units[0] == ControlZ)) {
            state = {};
            return 0;
        }
        typed = std::wstring(state.heldHalf == 0 ? 0 : 1, state.heldHalf);
        typed.append(units.data(), count);
        state.heldHalf = 0;
        state.atLineStart = typed.back() == L'\n';
        if (IS_HIGH_SURROGATE(typed.back())) {
            state.heldHalf = typed.back();
            typed.pop_back();
        }
    } while (typed.empty());
    const std::string bytes = EncodeText(typed, InputCodePage());
    return bytes.copy(buffer, size);
}

}  // namespace

std::size_t ReadStandardInput(char* buffer, std::size_t size) {
    const HANDLE handle = GetStdHandle(STD_INPUT_HANDLE);
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE) {
        return 0;
    }
    DWORD mode = 0;
    if (GetConsoleMode(handle, &mode) != 0) {
        return ReadTypedText(handle, buffer, size);
    }
    DWORD count = 0;
    // A pipe whose writer has gone reports an error: the end of input.
    if (ReadFile(handle, buffer, static_cast<DWORD>(size), &count, nullptr) == 0) {
        return 0;
    }
    return count;
}

}  // namespace tavro::platform
