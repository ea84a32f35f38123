#pragma once

#include <string>

#include "simulator/host/member.h"
#include "tavroapi/iscsi_records.h"

namespace tavrosim {

// How an initiator logs in, as the host file holds it: the texts of the contract's login options.
struct Login {
    std::string multipath = "Yes";
    std::string headerDigest = "No";
    std::string dataDigest = "No";
    std::string authentication = "None";
    std::string targetChapName;
    std::string targetSecret;
    std::string initiatorChapName;
    std::string initiatorSecret;

    static constexpr auto Members(auto visit) {
        return visit(Member{"multipath", &Login::multipath},
                     Member{"headerDigest", &Login::headerDigest},
                     Member{"dataDigest", &Login::dataDigest},
                     Member{"authentication", &Login::authentication},
                     Member{"targetChapName", &Login::targetChapName},
                     Member{"targetSecret", &Login::targetSecret},
                     Member{"initiatorChapName", &Login::initiatorChapName},
                     Member{"initiatorSecret", &Login::initiatorSecret});
    }
};

inline Login LoginOf(const tavroapi::LoginOptions& options) {
    return {options.multipath,         options.headerDigest,   options.dataDigest,
            options.authentication,    options.targetChapName, options.targetSecret,
            options.initiatorChapName, options.initiatorSecret};
}

// The options as the library tells them: without the secrets, which never leave the host.
inline tavroapi::LoginOptions OptionsOf(const Login& login) {
    return {login.multipath,         login.headerDigest,
            login.dataDigest,        login.authentication,
            login.targetChapName,    {},
            login.initiatorChapName, {}};
}

}  // namespace tavrosim
