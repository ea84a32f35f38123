#pragma once

#include "linux/state/wiped_login.h"

// How the initiator logs in. Secrets are wiped where they were copied to.
namespace tavrolinux {

// What login options say of their authentication, besides "None".
inline constexpr const char* OneWayChap = "One-way CHAP";
inline constexpr const char* MutualChap = "Mutual CHAP";

// Puts the usual values in place of texts that say nothing.
void Complete(tavroapi::LoginOptions& login);

// Throws IscsiFailure for options with which this host does not log in: with data digests, or with
// one secret for both sides, which the protocol forbids.
void WantUsable(const tavroapi::LoginOptions& login);

// The options as the library tells them: without the secrets, which never leave its state.
tavroapi::LoginOptions WithoutSecrets(const tavroapi::LoginOptions& login);

// How to log in where `own` was said: with it, and where it has no authentication, with that of the
// host's initiator. There are header digests where either has them.
class EffectiveLogin {
  public:
    EffectiveLogin(const tavroapi::LoginOptions& own, const tavroapi::LoginOptions& initiator);

    const tavroapi::LoginOptions& Options() const { return options_; }

  private:
    WipedLogin options_;
};

}  // namespace tavrolinux
