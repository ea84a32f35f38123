#include "linux/serve/operation.h"

namespace tavrolinux {

std::span<const Operation> IscsiPortOperations() {
    return {};
}

}  // namespace tavrolinux
