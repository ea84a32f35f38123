// Input that must not be seen.
#pragma once

#include <string>

namespace tavro::console {

// Reads a secret key by key without echo, each key shown as "*", into `text`, whose former content
// is wiped. Enter (CR or LF; the LF of a CR LF is swallowed) ends it and prints a line end, as the
// end of input does. Backspace (8, outside Windows also 127) takes the last character back. On a
// terminal the echo is off meanwhile and on again on every way out; Ctrl-C ends the program.
// Without a terminal the keys are the bytes of standard input. No copy of the secret stays behind
// in memory except `text` itself, which is the caller's to wipe (wipe.h). Throws OutputLost if
// output is lost or gets lost while it is typed; `text` is wiped then.
void ReadSecret(std::string& text);

}  // namespace tavro::console
