#include "platform/crash_dump.h"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace tavro::platform {

void ForbidCrashDumps() noexcept {
    const rlimit noCore{};
    setrlimit(RLIMIT_CORE, &noCore);
    // A program that the system hands its cores to gets them whatever the limit.
    prctl(PR_SET_DUMPABLE, 0);
}

}  // namespace tavro::platform
