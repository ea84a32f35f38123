#include "twin/process/child.h"

#include <gtest/gtest.h>

namespace tavrohost {
namespace {

TEST(TellEnd, SaysWhatBecameOfAChild) {
    EXPECT_EQ(TellEnd({platform::EndKind::Exited, 3}), "ended with exit status 3");
    EXPECT_EQ(TellEnd({platform::EndKind::TimedOut}), "did not end in time and was stopped");
}

TEST(TellEnd, SaysWhatACrashWasInTheSystemsOwnWay) {
#ifdef _WIN32
    EXPECT_EQ(TellEnd({platform::EndKind::Crashed, static_cast<int>(0xC0000005)}),
              "crashed with exception 0xC0000005");
#else
    EXPECT_EQ(TellEnd({platform::EndKind::Crashed, 11}), "was ended by signal 11");
#endif
}

}  // namespace
}  // namespace tavrohost
