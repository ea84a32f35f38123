#include "linux/system/network.h"

#include <sys/stat.h>

namespace tavrolinux {

std::uint32_t NetworkOfThisProcess(const Roots& roots) {
    struct stat network {};
    return ::stat((roots.proc / "self/ns/net").c_str(), &network) == 0
               ? static_cast<std::uint32_t>(network.st_ino)
               : 0;
}

}  // namespace tavrolinux
