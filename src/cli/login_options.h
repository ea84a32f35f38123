#pragma once

#include <string_view>
#include <vector>

#include "cli/arguments.h"
#include "tavroapi/iscsi_records.h"

namespace tavro {

// Sets the defaults: multipath "Yes", no digests, no authentication, empty CHAP names and secrets.
void ResetLoginOptions(tavroapi::LoginOptions& options);

// The words of the login options.
std::vector<std::string_view> LoginOptionWords();

// Whether the word is one of the login options, exactly so.
bool IsLoginOption(std::string_view word);

// Takes the login options among the arguments from `first` on ("-mp", "-hd", "-dd", "-mutualchap",
// "-onewaychap", exactly so) into `options`; other words are ignored. CHAP names and secrets are
// asked for on the console, a secret until it has 12 to 16 characters. Returns 0: it never rejects.
int ParseLoginOptions(tavroapi::LoginOptions& options, Arguments arguments, std::size_t first = 0);

}  // namespace tavro
