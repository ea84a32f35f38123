#include "linux/serve/operation.h"

namespace tavrolinux {

std::span<const Operation> TcpIpOperations() {
    return {};
}

}  // namespace tavrolinux
