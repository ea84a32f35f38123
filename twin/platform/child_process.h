#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// Running this very program a second time, as a child that shares terminal and folder with it.
namespace tavrohost::platform {

// Thrown where a signal (on Windows a key or the end of the console) asks this process to end. Not
// derived from std::exception: whoever handles errors is not to go on.
struct Interrupted {
    int signal = 0;
};

// Ends the process by the signal, as if it had never been caught; where that is impossible, returns
// the exit status that tells of it.
int EndInterrupted(const Interrupted& interrupted);

// While an object of this type lives, the signals that ask a process to end do not end this one at
// once: RunThisProgram acts on them, and otherwise they wait. Those that the process was started to
// ignore stay ignored. Objects may be nested; the last one that goes lets the signals act.
class HeldSignals {
  public:
    HeldSignals();
    ~HeldSignals();
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;
};

struct ChildCommand {
    // In UTF-8, the name under which the program runs first.
    std::vector<std::string> arguments;
    // An environment variable that the child has beside those of this process.
    std::pair<std::string, std::filesystem::path> variable;
    // A new file that becomes the child's standard output, in place of this process's own.
    std::optional<std::filesystem::path> outputFile;
    std::optional<std::chrono::milliseconds> timeLimit;
};

enum class EndKind {
    Exited,    // `code` is the exit status
    Crashed,   // `code` is the signal, on Windows the exception
    TimedOut,  // had to be ended when its time was over
};

struct ChildEnd {
    EndKind kind = EndKind::Exited;
    int code = 0;
};

// Starts the program file of this process and waits for the end. A child whose time is over, or
// that a signal is to end, is asked to end first (on Windows ended at once) and killed if it goes
// on; the terminal is then as it was. Throws Interrupted after that signal, and TroubleError when
// the program cannot be started.
ChildEnd RunThisProgram(const ChildCommand& command);

// What a crash is as the end of a sentence about the child: "was ended by signal 11", on Windows
// "crashed with exception 0xC0000005".
std::string TellCrash(int code);

// The number by which the system knows this process.
std::int64_t ThisProcess();

// To be called by the child: it is not to outlive its parent, the process of that number, and ends
// at once where that has gone by now.
void EndWithParent(std::int64_t parent);

}  // namespace tavrohost::platform
