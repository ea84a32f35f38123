#pragma once

#include <optional>
#include <stdexcept>
#include <vector>

#include "linux/netlink/addresses.h"
#include "linux/netlink/links.h"
#include "linux/tcpip/attempts.h"

namespace tavrolinux {

// Another host has the address that is wanted.
class AddressTaken : public std::runtime_error {
  public:
    explicit AddressTaken(const IpAddress& address) : std::runtime_error(TextOf(address)) {}
};

// Changing the address that the read-out shows of one family of an interface. The others stay, with
// everything that belongs to them; the order in which the kernel keeps them decides which one is
// shown, so that some may go and come back. Members throw SystemFailure.
class AddressChange {
  public:
    // Notes what is there.
    AddressChange(Socket& route, const Link& link, Family family);

    const std::vector<AssignedAddress>& Former() const { return former_; }

    // Shows the wanted address in the place of the one that was shown, or takes that away. One that
    // the interface has already is shown and stays for good, and nothing is taken away for it.
    // Returns the address that it replaced, if any. Throws AddressTaken for one of IPv6 that the
    // kernel finds on another host, before any other goes for it where that is possible.
    std::optional<AssignedAddress> Show(const std::optional<AssignedAddress>& wanted);

    // Puts back what was there, and those that were there for good in their order. What never went
    // and was only announced, for a time, is left alone, and so is what others have added.
    void Undo(Attempts& attempts);

  private:
    void Arrange(const std::vector<AssignedAddress>& wanted, const DoStep& attempt);
    std::vector<AssignedAddress> OwnNow() const;
    void CheckFree(const IpAddress& address) const;

    Socket& route_;
    const Link& link_;
    Family family_;
    std::vector<AssignedAddress> former_;
    std::optional<AssignedAddress> placed_;
};

}  // namespace tavrolinux
