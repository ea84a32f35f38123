#include "platform/crash_dump.h"

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/prctl.h>
#include <sys/resource.h>
#endif

namespace tavro::platform {
namespace {

#ifdef _WIN32

TEST(ForbidCrashDumps, AnErrorIsNotReported) {
    const UINT former = SetErrorMode(SEM_NOALIGNMENTFAULTEXCEPT);
    ForbidCrashDumps();
    const UINT mode = SetErrorMode(former);
    EXPECT_NE(mode & SEM_NOGPFAULTERRORBOX, 0U);
    EXPECT_NE(mode & SEM_NOALIGNMENTFAULTEXCEPT, 0U) << "what was set before stays";
}

#else

// In a process of its own, since there is no way back.
TEST(ForbidCrashDumps, LeavesNoCore) {
    const auto forbid = [] {
        prctl(PR_SET_DUMPABLE, 1);
        ForbidCrashDumps();
        rlimit core{1, 1};
        getrlimit(RLIMIT_CORE, &core);
        const bool isForbidden = core.rlim_cur == 0 && core.rlim_max == 0;
        _exit(isForbidden && prctl(PR_GET_DUMPABLE) == 0 ? 0 : 1);
    };
    EXPECT_EXIT(forbid(), ::testing::ExitedWithCode(0), "");
}

#endif

}  // namespace
}  // namespace tavro::platform
