#include "linux/serve/operation.h"

namespace tavrolinux {

std::span<const Operation> EthernetPortOperations() {
    return {};
}

}  // namespace tavrolinux
