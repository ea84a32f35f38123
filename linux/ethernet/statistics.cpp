#include "linux/serve/operation.h"

namespace tavrolinux {

std::span<const Operation> EthernetStatisticsOperations() {
    return {};
}

}  // namespace tavrolinux
