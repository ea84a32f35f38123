#include "linux/tcpip/address_use.h"

#include <algorithm>
#include <thread>
#include <vector>

namespace tavrolinux {

bool IsOneTaken(Socket& route, const Link& link, std::span<const IpAddress> addresses,
                std::chrono::milliseconds patience) {
    constexpr std::chrono::milliseconds Pause{50};
    if (addresses.empty() || addresses.front().family == Family::IPv4) {
        return false;
    }
    for (const auto end = std::chrono::steady_clock::now() + patience;;) {
        std::vector<AssignedAddress> held = ReadAddresses(route, link, Family::IPv6);
        std::erase_if(held, [&](const AssignedAddress& one) {
            return std::ranges::find(addresses, one.address) == addresses.end();
        });
        if (std::ranges::any_of(held, &AssignedAddress::isTaken)) {
            return true;
        }
        if (std::ranges::none_of(held, &AssignedAddress::isTentative) || !link.hasCarrier ||
            std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(Pause);
    }
}

}  // namespace tavrolinux
