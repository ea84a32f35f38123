#include "linux/system/blocked_signals.h"

#include <gtest/gtest.h>

#include "unit/linux/system/counted_signals.h"

namespace tavrolinux {
namespace {

TEST(BlockedSignals, ActWhenTheBlockIsGone) {
    const CountedSignals signals(SIGHUP);
    {
        const BlockedSignals blocked;
        raise(SIGHUP);
        EXPECT_EQ(CountedSignals::Seen(), 0);
    }
    EXPECT_EQ(CountedSignals::Seen(), 1);
    raise(SIGHUP);
    EXPECT_EQ(CountedSignals::Seen(), 2) << "the mask is what it was";
}

}  // namespace
}  // namespace tavrolinux
