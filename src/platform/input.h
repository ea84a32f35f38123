// Raw reads of standard input, below every kind of buffering and line end translation.
#pragma once

#include <cstddef>

namespace tavro::platform {

// Waits for input, also where the stream itself would not, and puts at most `size` bytes (at least
// 16 on Windows) into the buffer. Returns how many; 0 at the end of input, which an unreadable
// standard input counts as. Reading on after the end is allowed: a terminal may deliver more. On a
// Windows console the text typed arrives in the console's input code page, and a line that begins
// with Ctrl-Z is an end of input.
std::size_t ReadStandardInput(char* buffer, std::size_t size);

}  // namespace tavro::platform
