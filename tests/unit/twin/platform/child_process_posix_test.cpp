// On Windows the system itself ends a child with its parent.
#ifndef _WIN32

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>

#include "twin/platform/child_process.h"

namespace tavrohost::platform {
namespace {

TEST(EndWithParent, EndsAChildWhoseParentHasGoneBefore) {
    const std::int64_t gone = getppid();  // of the test is not the parent of what it starts
    EXPECT_EXIT(EndWithParent(gone), testing::KilledBySignal(SIGTERM), "");
}

TEST(EndWithParent, LetsAChildGoOnWhoseParentIsThere) {
    EXPECT_EXIT(
        {
            EndWithParent(getppid());
            _exit(7);
        },
        testing::ExitedWithCode(7), "");
}

}  // namespace
}  // namespace tavrohost::platform

#endif
