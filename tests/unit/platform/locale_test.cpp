#include "platform/locale.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace tavro::platform {
namespace {

// Which locales the environment names, and whether they are installed, is the user's affair; the
// end-to-end tests choose them.
TEST(UserLocaleName, IsTheLocaleThatTheProcessHasAfterwards) {
    const std::string former = std::setlocale(LC_ALL, nullptr);
    const std::string name = UserLocaleName();
    const std::string current = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, former.c_str());
    const bool isSet = current == name ||
                       current.find("LC_MESSAGES=" + name + ";") != std::string::npos ||
                       current.ends_with("LC_MESSAGES=" + name);
    EXPECT_TRUE(name.empty() || isSet) << name << " but " << current;
}

}  // namespace
}  // namespace tavro::platform
