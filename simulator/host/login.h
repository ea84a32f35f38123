#pragma once

#include <string>
#include <tuple>

#include "simulator/host/member.h"
#include "tavroapi/iscsi_records.h"

namespace tavrosim {

/// How an initiator logs in, as the host file holds it: the texts of the contract's login options.
struct Login {
    std::string multipath = "Yes";
    std::string headerDigest = "No";
    std::string dataDigest = "No";
    std::string authentication = "None";
    std::string targetChapName;
    std::string targetSecret;
    std::string initiatorChapName;
    std::string initiatorSecret;

    static constexpr auto Members() {
        return std::tuple{
            Member{"multipath", &Login::multipath, Presence::Optional},
            Member{"headerDigest", &Login::headerDigest, Presence::Optional},
            Member{"dataDigest", &Login::dataDigest, Presence::Optional},
            Member{"authentication", &Login::authentication, Presence::Optional},
            Member{"targetChapName", &Login::targetChapName, Presence::Optional},
            Member{"targetSecret", &Login::targetSecret, Presence::Optional},
            Member{"initiatorChapName", &Login::initiatorChapName, Presence::Optional},
            Member{"initiatorSecret", &Login::initiatorSecret, Presence::Optional}};
    }
};

inline Login LoginOf(const tavroapi::LoginOptions& options) {
    return {options.multipath,         options.headerDigest,   options.dataDigest,
            options.authentication,    options.targetChapName, options.targetSecret,
            options.initiatorChapName, options.initiatorSecret};
}

/// The options as the library tells them: without the secrets, which never leave the host.
inline tavroapi::LoginOptions OptionsOf(const Login& login) {
    return {login.multipath,         login.headerDigest,
            login.dataDigest,        login.authentication,
            login.targetChapName,    {},
            login.initiatorChapName, {}};
}

}  // namespace tavrosim
