#include "linux/iscsi/initiator_name.h"

namespace tavrolinux {

std::string ReadInitiatorName(const Roots& /*roots*/) {
    return {};
}

}  // namespace tavrolinux
