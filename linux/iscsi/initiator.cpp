#include "linux/serve/operation.h"

namespace tavrolinux {

std::span<const Operation> InitiatorOperations() {
    return {};
}

}  // namespace tavrolinux
