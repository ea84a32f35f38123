// A stand-in for the process's own output and input: the seam through which unit tests see what is
// printed, and through which answers come that nobody types.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/encoding.h"

namespace tavro::console {

struct State;

// Where output goes and input comes from.
struct Device {
    // Writes all bytes; false when output can no longer be written. Used where writeText is empty.
    std::function<bool(std::string_view)> writeBytes;
    // Writes all text to a console that takes Unicode; empty where output takes bytes.
    std::function<bool(std::wstring_view)> writeText;
    // The code page that wide text is encoded in, or, with writeText, that narrow text is decoded
    // from.
    unsigned codePage = platform::Utf8CodePage;
    // Whether a terminal takes the output, on which control characters must not act that a text
    // brings along. Its bytes are UTF-8.
    bool isTerminal = false;
    // What a "\n" becomes.
    std::string lineEnd = "\n";
    // Lines are kept until so many bytes (characters, with writeText) of them are pending, and then
    // written at once. With 0 each line is written as it ends.
    std::size_t blockSize = 0;
    // Puts at most `size` bytes into the buffer and returns how many; 0 is the end of input.
    std::function<std::size_t(char* buffer, std::size_t size)> readBytes;
    // Told before readBytes waits for input: what the open line shows, the prompt, and whether the
    // answer is a secret. An answer empties the line that is told. May throw CommandAbandoned.
    // Empty where nobody wants to know.
    std::function<void(std::wstring_view openLine, bool isSecret)> asked;
    // Told when an answer was refused. May throw CommandAbandoned. May be empty.
    std::function<void()> refused;
    // Whether secrets are read key by key from the process's terminal instead of by readBytes.
    bool keysFromTerminal = false;
};

// The process's own streams.
Device StandardDevice();

// While an object of this type lives, the console uses the given device instead of the process's
// own streams. What was pending before, in and out, is kept aside and comes back afterwards.
// Objects may be nested.
class Redirect {
  public:
    explicit Redirect(Device device);
    ~Redirect();
    Redirect(const Redirect&) = delete;
    Redirect& operator=(const Redirect&) = delete;
    Redirect(Redirect&&) = delete;
    Redirect& operator=(Redirect&&) = delete;

  private:
    std::unique_ptr<State> state_;
    State* former_;
};

// A Redirect into memory, in UTF-8 with "\n" as line end on every system.
class MemoryConsole {
  public:
    // `input` is what the program will read; after it comes the end of input.
    explicit MemoryConsole(std::string input = {});

    // Everything written so far; what is printed without a line end is in it after the next flush
    // or read.
    const std::string& Output() const { return output_; }

  private:
    std::string input_;
    std::string output_;
    Redirect redirect_;
};

}  // namespace tavro::console
