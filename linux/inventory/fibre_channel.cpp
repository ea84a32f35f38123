#include "linux/inventory/fibre_channel.h"

namespace tavrolinux {

void TakeFibreChannelHost(const Roots& /*roots*/, Interface& /*interface*/) {}

}  // namespace tavrolinux
