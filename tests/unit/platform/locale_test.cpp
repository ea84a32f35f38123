#include "platform/locale.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace tavro::platform {
namespace {

TEST(UserLocaleName, IsTheLocaleThatTheProcessHasAfterwards) {
    const std::string former = std::setlocale(LC_ALL, nullptr);
    const std::string name = UserLocaleName();
    const std::string current = std::setlocale(LC_ALL, nullptr);
    EXPECT_EQ(current, name.empty() ? former : name);
    std::setlocale(LC_ALL, former.c_str());
}

}  // namespace
}  // namespace tavro::platform
