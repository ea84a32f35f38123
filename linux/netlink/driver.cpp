// What only the older call tells of a driver.
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>

#include "linux/netlink/ethtool_device.h"
#include "linux/system/descriptor.h"
#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

// A text that may fill its array; empty where the driver says that it knows none.
template <std::size_t Size>
std::string TextIn(const char (&characters)[Size]) {
    std::string text(characters, std::find(characters, characters + Size, '\0'));
    return text == "N/A" ? std::string() : text;
}

}  // namespace

std::optional<DriverInformation> ReadDriverInformation(const Link& link) {
    const Descriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (!socket) {
        throw SystemFailure(errno, "reading the driver of " + link.name);
    }
    ethtool_drvinfo told{};
    told.cmd = ETHTOOL_GDRVINFO;
    ifreq request{};
    std::copy_n(link.name.begin(), std::min<std::size_t>(link.name.size(), IFNAMSIZ - 1),
                std::begin(request.ifr_name));
    request.ifr_data = reinterpret_cast<char*>(&told);
    if (::ioctl(socket.Get(), SIOCETHTOOL, &request) != 0) {
        if (errno == EPERM || errno == ENODEV) {
            throw SystemFailure(errno, "reading the driver of " + link.name);
        }
        return std::nullopt;
    }
    return DriverInformation{TextIn(told.driver), TextIn(told.version), TextIn(told.fw_version),
                             TextIn(told.erom_version), TextIn(told.bus_info)};
}

}  // namespace tavrolinux
