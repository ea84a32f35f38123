#pragma once

#include <utility>

#include "linux/system/wipe.h"
#include "tavroapi/iscsi_records.h"

namespace tavrolinux {

// How to log in, with secrets that stay nowhere but in here: their memory is wiped when this goes,
// before something else is assigned, and where they were moved away.
struct WipedLogin : tavroapi::LoginOptions {
    WipedLogin() = default;
    explicit WipedLogin(const LoginOptions& other) : LoginOptions(other) {}
    WipedLogin(const WipedLogin&) = default;
    WipedLogin(WipedLogin&& other) noexcept : LoginOptions(std::move(other)) {
        other.WipeSecrets();
    }
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
    WipedLogin& operator=(WipedLogin&& other) noexcept {
        if (this != &other) {
            WipeSecrets();
            LoginOptions::operator=(std::move(other));
            other.WipeSecrets();
        }
        return *this;
    }

  private:
    void WipeSecrets() {
        Wipe(targetSecret);
        Wipe(initiatorSecret);
    }
};

}  // namespace tavrolinux
