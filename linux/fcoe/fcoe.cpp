#include "linux/serve/operation.h"

namespace tavrolinux {

std::span<const Operation> FcoeOperations() {
    return {};
}

}  // namespace tavrolinux
