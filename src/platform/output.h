// Raw writes to standard output and standard error, below every kind of buffering.
#pragma once

#include <string_view>

namespace tavro::platform {

// To be called first in main. The system hands out the numbers of closed standard streams again: a
// stream that was closed from the start is put in a state in which it stays unusable, so that no
// file opened later becomes the program's output or input. A write to a pipe that nobody reads any
// more, or to a file that must not grow, fails instead of ending the process.
void PrepareStandardStreams();

// Writes all bytes to standard output as they are, waiting as long as needed. False when that is
// impossible (closed, full, nobody reads any more); a part may have been written then.
bool WriteStandardOutput(std::string_view bytes);

// Whether standard output is a terminal (a console on Windows).
bool StandardOutputIsTerminal();

// The same of standard error.
bool StandardErrorIsTerminal();

// Whether standard output is a console that takes Unicode text through WriteConsoleText. Always
// false outside Windows.
bool StandardOutputIsUnicodeConsole();

// Writes all text to the console that is standard output. False when that is impossible.
bool WriteConsoleText(std::wstring_view text);

// The code page in which text goes to standard output and standard error: 65001 outside Windows; on
// Windows the console's output code page, and the system's ANSI code page where the process has no
// console.
unsigned OutputCodePage();

// The characters that end a line of output here: "\r\n" on Windows, "\n" elsewhere.
std::string_view OutputLineEnd();

// Writes a diagnostic to standard error, "\n" as the system's line end, characters that cannot be
// encoded as '?', and on a terminal foreign control characters too (control_characters.h). A
// failure is ignored: there is no one left to tell.
void WriteStandardError(std::wstring_view text);

}  // namespace tavro::platform
