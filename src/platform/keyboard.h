// Key presses from the terminal, one by one and without echo.
#pragma once

namespace tavro::platform {

// Whether standard input is a terminal (a console on Windows).
bool StandardInputIsTerminal();

// The key number that the backspace key may send besides 8: 127 outside Windows, 8 on Windows.
int AlternateBackspace();

// While an object of this type lives, the terminal that is standard input hands over every key at
// once and echoes none. Its former state returns when the object is destroyed and when any signal
// that can be caught ends the process. No key suspends the process meanwhile: Ctrl-Z, Ctrl-\,
// Ctrl-S and Ctrl-Q are ordinary keys. Only one object at a time; only where
// StandardInputIsTerminal().
class KeyByKeyMode {
  public:
    KeyByKeyMode();
    ~KeyByKeyMode();
    KeyByKeyMode(const KeyByKeyMode&) = delete;
    KeyByKeyMode& operator=(const KeyByKeyMode&) = delete;
    KeyByKeyMode(KeyByKeyMode&&) = delete;
    KeyByKeyMode& operator=(KeyByKeyMode&&) = delete;

    // Waits for a key and returns its number 0..255, or -1 when the terminal is gone. Ctrl-C ends
    // the process.
    int ReadKey();
};

}  // namespace tavro::platform
