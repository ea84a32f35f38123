#include "linux/system/access.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "linux/system/failure.h"

namespace tavrolinux {

void WantAccess(const std::filesystem::path& path, int mode, const std::string& action) {
    const bool mayAccess = ::faccessat(AT_FDCWD, path.c_str(), mode, AT_EACCESS) == 0;
    if (!mayAccess && errno != ENOENT && errno != ENOTDIR) {
        throw SystemFailure(errno, action + ' ' + path.string(), FileRight);
    }
}

}  // namespace tavrolinux
