#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "console/redirect.h"
#include "simulator/host/host.h"
#include "simulator/script/script.h"

// Runs of tavrocli within this process: with the simulator's model of a host in memory as the
// library, and with input and output in memory.
namespace tavro_fuzz {

struct PlayedRun {
    std::vector<std::string> arguments{};  // behind the program's name; without zeros
    std::string typed{};                   // standard input
    // What the library does with each call that it serves; behind the last one, what it should:
    //     f  refuses it with a status      u  returns 0 and leaves the records as they came
    //     m  serves it, and then changes the values of the result record
    //     c  serves it, and then leaves another completion code
    //     x  throws an exception           anything else: serves it
    std::string treatments{};
    bool isTerminal = false;     // whether output goes to a terminal
    std::size_t blockSize = 0;   // of output (see console::Device)
    std::size_t mostOutput = 0;  // output is lost after so many bytes; 0 is as much as is sensible
    std::optional<std::size_t> missingEntryPoint{};
    // Answers before the host does; null for none.
    tavrosim::Script* script = nullptr;
    // Puts other input in the place of `typed`; may be empty.
    std::function<tavro::console::Device(tavro::console::Device)> device{};
};

struct PlayedCall {
    std::uint32_t operation = 0;  // 0 for a query
    std::uint32_t status = 0;
};

struct PlayedResult {
    std::string output;
    std::wstring failure;           // for standard error
    bool wasEnded = false;          // since nobody answered any more, or output was lost
    bool changedHost = false;       // whether a call changed the host, be it a counter
    std::vector<PlayedCall> calls;  // that were served, in their order
    std::string lastQuestion;       // all output up to the last wait for input or refusal
};

// Runs the command line on the host, which is changed as the library of such a run changes it.
// Requires of every run what must always hold: the library is initialized once and uninitialized
// once, standard error gets a whole line or nothing, the last line of output is ended or is a
// question, and on a terminal no control character acts but those of the program.
PlayedResult Play(const PlayedRun& run, tavrosim::Host& host);

// The built-in host, read once.
const tavrosim::Host& BuiltInHost();

// Requires that the host can be written and read again without a difference.
void RequireFile(const tavrosim::Host& host);

// The number of the message that a line shows, of those that were told last.
std::optional<std::uint32_t> MessageIn(std::wstring_view line);

// While it lives, the process works in a folder of its own, where it may leave files.
class InOwnFolder {
  public:
    InOwnFolder();
    ~InOwnFolder();
    InOwnFolder(const InOwnFolder&) = delete;
    InOwnFolder& operator=(const InOwnFolder&) = delete;

  private:
    int former_;
};

}  // namespace tavro_fuzz
