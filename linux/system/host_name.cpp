#include "linux/system/host_name.h"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>

#include "linux/system/failure.h"

namespace tavrolinux {

std::string ReadHostName() {
    std::array<char, HOST_NAME_MAX + 1> name{};
    if (gethostname(name.data(), name.size() - 1) != 0) {
        throw SystemFailure(errno, "reading the host's name");
    }
    return name.data();
}

}  // namespace tavrolinux
