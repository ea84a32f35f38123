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

// The text, or what an empty one stands for.
inline std::string TextOr(const std::string& text, const std::string& usual) {
    return text.empty() ? usual : text;
}

// The options, here or of the contract, with the usual values in place of texts that say nothing.
template <class Options>
Options Completed(Options options) {
    const Login usual;
    options.multipath = TextOr(options.multipath, usual.multipath);
    options.headerDigest = TextOr(options.headerDigest, usual.headerDigest);
    options.dataDigest = TextOr(options.dataDigest, usual.dataDigest);
    options.authentication = TextOr(options.authentication, usual.authentication);
    return options;
}

// The options as the host keeps them.
inline Login LoginOf(const tavroapi::LoginOptions& options) {
    return Completed(Login{options.multipath, options.headerDigest, options.dataDigest,
                           options.authentication, options.targetChapName, options.targetSecret,
                           options.initiatorChapName, options.initiatorSecret});
}

// The options as the library tells them: without the secrets, which never leave the host.
inline tavroapi::LoginOptions OptionsOf(const Login& login) {
    return Completed(tavroapi::LoginOptions{login.multipath,
                                            login.headerDigest,
                                            login.dataDigest,
                                            login.authentication,
                                            login.targetChapName,
                                            {},
                                            login.initiatorChapName,
                                            {}});
}

}  // namespace tavrosim
