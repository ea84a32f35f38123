#include "platform/locale.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace tavro::platform {
namespace {

TEST(UserLocaleName, IsTheLocaleThatTheProcessHasAfterwards) {
    const std::string former = std::setlocale(LC_ALL, nullptr);
    const bool isInstalled = std::setlocale(LC_ALL, "") != nullptr;
    std::setlocale(LC_ALL, former.c_str());
    if (!isInstalled) {
        GTEST_SKIP() << "not every locale that the environment names is installed";
    }
    const std::string name = UserLocaleName();
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), name);
    std::setlocale(LC_ALL, former.c_str());
}

}  // namespace
}  // namespace tavro::platform
