#pragma once

#include "cli/arguments.h"
#include "tavroapi/iscsi_records.h"

namespace tavro {

// Sets the defaults: multipath "Yes", no digests, no authentication, empty CHAP names and secrets.
void ResetLoginOptions(tavroapi::LoginOptions& options);

// Takes the login options among the arguments from `first` on ("-mp", "-hd", "-dd", "-mutualchap",
// "-onewaychap", exactly so) into `options`; other words are ignored. CHAP names and secrets are
// asked for on the console, a secret until it has 12 to 16 characters. Returns 0: it never rejects.
int ParseLoginOptions(tavroapi::LoginOptions& options, Arguments arguments, std::size_t first = 0);

// Wipes the CHAP secrets of options that it does not own when the scope is left.
class LoginSecretsGuard {
  public:
    explicit LoginSecretsGuard(tavroapi::LoginOptions& guardedOptions) : options(guardedOptions) {}
    ~LoginSecretsGuard();
    LoginSecretsGuard(const LoginSecretsGuard&) = delete;
    LoginSecretsGuard& operator=(const LoginSecretsGuard&) = delete;

  private:
    tavroapi::LoginOptions& options;
};

}  // namespace tavro
