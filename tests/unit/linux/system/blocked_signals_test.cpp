#include "linux/system/blocked_signals.h"

#include <gtest/gtest.h>

namespace tavrolinux {
namespace {

volatile sig_atomic_t signalsSeen = 0;

void CountSignal(int /*signal*/) {
    signalsSeen = signalsSeen + 1;
}

TEST(BlockedSignals, ActWhenTheBlockIsGone) {
    struct sigaction counting {};
    struct sigaction former {};
    counting.sa_handler = &CountSignal;
    ASSERT_EQ(sigaction(SIGHUP, &counting, &former), 0);
    {
        const BlockedSignals blocked;
        raise(SIGHUP);
        EXPECT_EQ(signalsSeen, 0);
    }
    EXPECT_EQ(signalsSeen, 1);
    raise(SIGHUP);
    EXPECT_EQ(signalsSeen, 2) << "the mask is what it was";
    sigaction(SIGHUP, &former, nullptr);
}

}  // namespace
}  // namespace tavrolinux
