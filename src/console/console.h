// The one way out and in: everything the program shows and reads passes through here.
//
// Wide and narrow output share one pending line, so whatever was printed first comes out first. A
// line end writes the line, as one write; a prompt without a line end is written before the program
// waits for input. In every text "\n" is the end of a line, whatever the system's own line end is.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tavro::console {

// Thrown by the functions below once output can no longer be written (closed or full). The program
// is to end then, with exit code 0 and without printing anything more. What was pending is dropped.
struct OutputClosed : std::runtime_error {
    OutputClosed() : std::runtime_error("standard output cannot be written any more") {}
};

// Prints wide text. Characters that the output cannot hold become '?'.
void Print(std::wstring_view text);

// Prints narrow text: the bytes as they are. On a Windows console, which takes Unicode, they are
// read in the console's output code page; a character of several bytes must not be spread over two
// calls.
void PrintNarrow(std::string_view bytes);

// Ends the line and writes it.
void EndLine();

// Prints the text and ends the line.
void PrintLine(std::wstring_view text);
void PrintNarrowLine(std::string_view bytes);

// Writes whatever is pending. To be called before the program ends; the reading functions do it by
// themselves.
void Flush();

// Reads a line: the bytes up to the next line end, without the line end and without one CR before
// it. The end of input ends a line too, so that at the end of input every line is empty.
std::string ReadLine();

// Like ReadLine, but what ended the line, a line end or the end of input, stays unread: exactly one
// SkipCharacter takes it, or else it is what the next reading function meets first.
std::string ReadLineLeavingLineEnd();

// Reads one character and nothing else, waiting for it. A line end, CR LF or LF, reads as '\n', the
// end of input as '\0'. DropRestOfLine after a '\n' would drop the next line.
char ReadCharacter();

// Takes one character off the input and drops it; a line end counts as one character.
void SkipCharacter();

// Drops the input up to and including the next line end. It does not wait: the next reading
// function drops it first.
void DropRestOfLine();

}  // namespace tavro::console
