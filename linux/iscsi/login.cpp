#include "linux/iscsi/login.h"

#include <string>

#include "linux/iscsi/failure.h"
#include "linux/serve/operation.h"

namespace tavrolinux {
namespace {

using tavroapi::LoginOptions;

constexpr const char* NoAuthentication = "None";
constexpr const char* UsesDigests = "CRC32C";

void SetWhereEmpty(std::string& text, const char* usual) {
    if (text.empty()) {
        text = usual;
    }
}

}  // namespace

void Complete(LoginOptions& login) {
    SetWhereEmpty(login.multipath, "Yes");
    SetWhereEmpty(login.headerDigest, "No");
    SetWhereEmpty(login.dataDigest, "No");
    SetWhereEmpty(login.authentication, NoAuthentication);
}

void WantUsable(const LoginOptions& login) {
    if (login.dataDigest == UsesDigests) {
        throw IscsiFailure(Refused(Status::NotOffered, L"This host cannot do that.",
                                   L"See the details for what is missing.", L"data digests (-dd)"));
    }
    if (login.authentication == MutualChap && login.targetSecret == login.initiatorSecret) {
        throw IscsiFailure(Refused(Status::LoginRefused, L"The two CHAP secrets are the same.",
                                   L"Give the target and the initiator different secrets."));
    }
}

LoginOptions WithoutSecrets(const LoginOptions& login) {
    LoginOptions told{login.multipath,         login.headerDigest,
                      login.dataDigest,        login.authentication,
                      login.targetChapName,    {},
                      login.initiatorChapName, {}};
    Complete(told);
    return told;
}

EffectiveLogin::EffectiveLogin(const LoginOptions& own, const LoginOptions& initiator)
    : options_(own) {
    Complete(options_);
    if (initiator.headerDigest == UsesDigests) {
        options_.headerDigest = UsesDigests;
    }
    if (options_.authentication == NoAuthentication) {
        options_.targetChapName = initiator.targetChapName;
        options_.targetSecret = initiator.targetSecret;
        options_.initiatorChapName = initiator.initiatorChapName;
        options_.initiatorSecret = initiator.initiatorSecret;
        options_.authentication = initiator.authentication;
        Complete(options_);
    }
}

}  // namespace tavrolinux
