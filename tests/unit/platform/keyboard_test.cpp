#include "platform/keyboard.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace tavro::platform {
namespace {

void HandleSignal(int /*signal*/) {}

// What is not there any more has no state to restore, and signals do what they did.
TEST(KeyByKeyMode, ATerminalThatIsGoneGivesNoKey) {
    const auto read = [] {
        const int other = open("/dev/null", O_RDONLY);
        dup2(other, STDIN_FILENO);
        std::signal(SIGUSR1, HandleSignal);
        std::signal(SIGUSR2, SIG_IGN);
        int key = 0;
        {
            KeyByKeyMode mode;
            key = mode.ReadKey();
        }
        const bool isAsBefore = std::signal(SIGUSR1, SIG_DFL) == HandleSignal &&
                                std::signal(SIGUSR2, SIG_DFL) == SIG_IGN;
        _exit(key == -1 && isAsBefore ? 0 : 1);
    };
    EXPECT_EXIT(read(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace tavro::platform

#endif
