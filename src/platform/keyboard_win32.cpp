#include "platform/keyboard.h"

#include <conio.h>
#include <windows.h>

namespace tavro::platform {

bool StandardInputIsTerminal() {
    DWORD mode = 0;
    const HANDLE handle = GetStdHandle(STD_INPUT_HANDLE);
    return handle != nullptr && handle != INVALID_HANDLE_VALUE &&
           GetConsoleMode(handle, &mode) != 0;
}

int AlternateBackspace() {
    return 8;
}

// _getch itself switches the console over for each key and back again.
KeyByKeyMode::KeyByKeyMode() = default;

KeyByKeyMode::~KeyByKeyMode() = default;

int KeyByKeyMode::ReadKey() {
    constexpr int ControlC = 3;
    constexpr UINT EndedByControlC = 0xC000013A;
    const int key = _getch();
    if (key == ControlC) {
        ExitProcess(EndedByControlC);
    }
    return key < 0 || key > 255 ? -1 : key;
}

}  // namespace tavro::platform
