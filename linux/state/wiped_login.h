#pragma once

#include "linux/system/wipe.h"
#include "tavroapi/iscsi_records.h"

namespace tavrolinux {

// How to log in, with secrets that stay nowhere but in here: their memory is wiped when this goes,
// and before something else is assigned. It is copied, never moved, so that where it was it goes.
struct WipedLogin : tavroapi::LoginOptions {
    WipedLogin() = default;
    explicit WipedLogin(const LoginOptions& other) : LoginOptions(other) {}
    WipedLogin(const WipedLogin&) = default;
    ~WipedLogin() { WipeSecrets(); }

    WipedLogin& operator=(const LoginOptions& other) {
        if (this != &other) {
            WipeSecrets();
            LoginOptions::operator=(other);
        }
        return *this;
    }
    WipedLogin& operator=(const WipedLogin& other) {
        return *this = static_cast<const LoginOptions&>(other);
    }

  private:
    void WipeSecrets() {
        Wipe(targetSecret);
        Wipe(initiatorSecret);
    }
};

}  // namespace tavrolinux
