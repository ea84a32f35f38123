#pragma once

#include <string_view>

namespace tavrolinux {

// Whether the address is this host's own, such as a loopback address. What is sent there passes no
// interface, so that nothing can be bound to one.
bool IsAddressOfThisHost(std::string_view address);

}  // namespace tavrolinux
