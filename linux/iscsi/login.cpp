#include "linux/iscsi/login.h"

#include <string>

namespace tavrolinux {
namespace {

using tavroapi::LoginOptions;

constexpr const char* NoAuthentication = "None";

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
