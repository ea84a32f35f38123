#include "linux/serve/operation.h"

namespace tavrolinux {

std::span<const Operation> AdapterSettingsOperations() {
    return {};
}

}  // namespace tavrolinux
