// Secrets are looked for in the memory that texts have taken, whatever the texts say of it.
#include "linux/state/wiped_login.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <string_view>

namespace tavrolinux {
namespace {

constexpr const char* Short = "shortsecret1";
constexpr const char* Long = "a secret of more than a few characters";

// Whether the bytes of a text, as far as its memory goes, hold anything at all.
bool HoldsNothing(const std::string& text) {
    return std::all_of(text.data(), text.data() + text.capacity(),
                       [](char character) { return character == '\0'; });
}

WipedLogin LoginWith(const char* secret) {
    WipedLogin login;
    login.targetSecret = secret;
    login.initiatorSecret = secret;
    return login;
}

TEST(WipedText, HoldsNothingBeyondItsSizeEither) {
    for (const char* const secret : {Short, Long}) {
        std::string text = secret;
        text.resize(3);
        Wipe(text);
        EXPECT_EQ(text, "");
        EXPECT_TRUE(HoldsNothing(text)) << secret;
    }
}

TEST(WipedLogin, LeavesNothingWhereSomethingElseIsAssigned) {
    for (const char* const secret : {Short, Long}) {
        WipedLogin login = LoginWith(secret);
        const WipedLogin nothing = LoginWith("");
        login = nothing;
        EXPECT_TRUE(HoldsNothing(login.targetSecret)) << secret;
        EXPECT_TRUE(HoldsNothing(login.initiatorSecret)) << secret;
    }
}

TEST(WipedLogin, LeavesNothingWhenItGoes) {
    // As it lies in an element of a list that is taken away or moved up.
    alignas(WipedLogin) std::array<unsigned char, sizeof(WipedLogin)> memory{};
    auto* const login = new (memory.data()) WipedLogin(LoginWith(Short));
    std::destroy_at(login);
    const char* const begin = reinterpret_cast<const char*>(memory.data());
    const std::string_view left(begin, memory.size());
    EXPECT_EQ(left.find(std::string_view(Short).substr(4)), std::string_view::npos);
}

TEST(WipedLogin, StaysAsItIsWhenItIsAssignedToItself) {
    WipedLogin login = LoginWith(Long);
    const WipedLogin& same = login;
    login = same;
    EXPECT_EQ(login.targetSecret, Long);
}

}  // namespace
}  // namespace tavrolinux
