#include "linux/tcpip/network_manager.h"

namespace tavrolinux {

std::optional<std::string> ManagerOf(const Roots& /*roots*/, const Interface& /*interface*/) {
    return std::nullopt;
}

}  // namespace tavrolinux
