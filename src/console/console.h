// The one way out and in: everything the program shows and reads passes through here.
//
// Wide and narrow output are pending together, so whatever was printed first comes out first. On a
// terminal a line end writes the line, as one write; to a file or a pipe lines are written in
// blocks. All that is pending, a prompt without a line end as well, is written before the program
// waits for input or for the management library (mgmt/library.h), and at its end, so that what was
// printed is seen meanwhile and is not lost with the process. In every text "\n" is the end of a
// line, whatever the system's own line end is.
// On a terminal (a console on Windows) every other control character but the tab is shown as '?':
// names come from the fabric, and must not clear the administrator's screen. A "\n" in a name ends
// a line there as well; nobody can tell it from one of a message. Files and pipes get what was
// printed.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tavro::console {

// Once output cannot be written (closed, full, nobody reads any more) it is lost for good: what was
// pending is dropped, and printing does nothing. The program goes on with its work, for which it
// needs no output. Only what makes no sense unseen throws OutputLost: a question and a notice
// without end.

// The command is to end at once and without a word. Handlers are unwound by it and wipe their
// secrets on the way.
struct CommandAbandoned : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The program is to end, with exit code 0, because nobody would see what it is about to show.
struct OutputLost : CommandAbandoned {
    OutputLost() : CommandAbandoned("standard output cannot be written any more") {}
};

// Whether output is lost, as far as is known: a write has failed.
bool OutputIsLost();

// Writes whatever is pending, and throws OutputLost if output is lost. The reading functions begin
// with it; a notice that repeats without end needs it each time.
void RequireOutput();

// Calls show(item) for each item of a list, which may be long, unless output is lost.
template <typename List, typename Show>
void ShowEach(const List& list, Show show) {
    for (const auto& item : list) {
        if (OutputIsLost()) {
            return;
        }
        show(item);
    }
}

// Prints wide text. Characters that the output cannot hold become '?'.
void Print(std::wstring_view text);

// Prints narrow text: the bytes as they are. On a Windows console, which takes Unicode, they are
// read in the console's output code page, on other terminals as UTF-8; a character of several bytes
// must not be spread over two calls.
void PrintNarrow(std::string_view bytes);

// Prints narrow text, each byte as the character of its number, like wide text otherwise.
void PrintWidened(std::string_view bytes);

// Ends the line. On a terminal it is written.
void EndLine();

// Prints the text and ends the line.
void PrintLine(std::wstring_view text);
void PrintNarrowLine(std::string_view bytes);

// Writes whatever is pending. To be called before the program ends, does something that takes long
// or may end the process, and writes to standard error; the reading functions do it by themselves.
void Flush();

// The reading functions throw OutputLost if output is lost, and read nothing then. They also do
// when they have met the end of input a thousand times without a word in between: a question
// without end that nobody sees.

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

// To be called when an answer was refused and the refusal was shown. Nothing follows from it where
// somebody types; a Device that gives the answers (redirect.h) may end the command.
void NoteRefusedAnswer();

// Drops the input up to and including the next line end. It does not wait: the next reading
// function drops it first.
void DropRestOfLine();

}  // namespace tavro::console
