#include "linux/serve/operation.h"

namespace tavrolinux {

std::span<const Operation> IscsiStorageOperations() {
    return {};
}

}  // namespace tavrolinux
