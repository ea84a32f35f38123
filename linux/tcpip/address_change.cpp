#include "linux/tcpip/address_change.h"

#include <linux/rtnetlink.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <iterator>

#include "linux/inventory/ip_settings.h"
#include "linux/tcpip/address_use.h"

namespace tavrolinux {
namespace {

using Addresses = std::vector<AssignedAddress>;

Addresses::const_iterator PlaceOf(const Addresses& addresses, const AssignedAddress& one) {
    return std::ranges::find_if(
        addresses, [&](const AssignedAddress& address) { return address.IsSame(one); });
}

bool IsAmong(const Addresses& addresses, const AssignedAddress& one) {
    return PlaceOf(addresses, one) != addresses.end();
}

// The address that the interface has already, if it is one that can be shown.
std::optional<AssignedAddress> Held(const Addresses& addresses, const AssignedAddress& wanted) {
    const auto found = std::ranges::find_if(addresses, [&](const AssignedAddress& address) {
        return address.address == wanted.address && address.prefixLength == wanted.prefixLength &&
               address.scope == RT_SCOPE_UNIVERSE && !address.isTemporary;
    });
    return found == addresses.end() ? std::nullopt : std::optional(*found);
}

// What goes for the wanted one: the same address in another network, else the one that is shown.
std::optional<AssignedAddress> ReplacedBy(const AssignedAddress& wanted, const Addresses& former) {
    const auto same = std::ranges::find(former, wanted.address, &AssignedAddress::address);
    return same != former.end() ? std::optional(*same) : ShownAddress(former);
}

// Whether nothing that goes would take the address with it, and nothing keeps it out.
bool CanStandBeside(const AssignedAddress& wanted, const Addresses& others) {
    return std::ranges::none_of(others, [&](const AssignedAddress& other) {
        return other.address == wanted.address ||
               (wanted.address.family == Family::IPv4 &&
                other.prefixLength == wanted.prefixLength &&
                AreInOneNetwork(other.peer, wanted.peer, wanted.prefixLength));
    });
}

// The addresses whose order is kept. The kernel renews those of IPv6 that are announced, and those
// that it makes up itself; they are never shown before one that is there for good.
bool IsOrdered(const AssignedAddress& address) {
    return address.address.family == Family::IPv4 || address.isPermanent;
}

Addresses Ordered(const Addresses& addresses) {
    Addresses ordered;
    std::ranges::copy_if(addresses, std::back_inserter(ordered), IsOrdered);
    return ordered;
}

// The first of the wanted addresses, as far as they are there in their order.
Addresses InPlace(const Addresses& wanted, const Addresses& now) {
    Addresses kept;
    for (const AssignedAddress& address : now) {
        if (kept.size() < wanted.size() && address.IsSame(wanted[kept.size()])) {
            kept.push_back(address);
        }
    }
    return kept;
}

// The addresses without the one that goes, and with another in front of the one that is shown, or
// behind all.
Addresses With(const std::optional<AssignedAddress>& placed, const Addresses& former,
               const std::optional<AssignedAddress>& shown,
               const std::optional<AssignedAddress>& replaced) {
    Addresses arranged;
    for (const AssignedAddress& address : former) {
        if (placed && shown && address.IsSame(*shown)) {
            arranged.push_back(*placed);
        }
        const bool isPlaced = placed && address.IsSame(*placed);
        if (!isPlaced && !(replaced && address.IsSame(*replaced))) {
            arranged.push_back(address);
        }
    }
    if (placed && !IsAmong(arranged, *placed)) {
        arranged.push_back(*placed);
    }
    return arranged;
}

}  // namespace

AddressChange::AddressChange(Socket& route, const Link& link, Family family)
    : route_(route), link_(link), family_(family), former_(ReadAddresses(route, link, family)) {}

std::optional<AssignedAddress> AddressChange::Show(const std::optional<AssignedAddress>& wanted) {
    const std::optional<AssignedAddress> shown = ShownAddress(former_);
    std::optional<AssignedAddress> replaced = shown;
    if (wanted) {
        const std::optional<AssignedAddress> held = Held(former_, *wanted);
        if (held) {
            if (!held->isPermanent) {
                MakePermanent(route_, link_, *held);
            }
            placed_ = Held(ReadAddresses(route_, link_, family_), *wanted);
            replaced.reset();
        } else {
            replaced = ReplacedBy(*wanted, former_);
            placed_ = NewAddress(link_, wanted->address, wanted->prefixLength, replaced);
            if (CanStandBeside(*placed_, former_)) {
                AddAddress(route_, link_, *placed_);
                CheckFree(placed_->address);
            }
        }
    }
    if (replaced && !IsOrdered(*replaced)) {
        RemoveAddress(route_, link_, *replaced);
    }
    Arrange(With(placed_, former_, shown, replaced), DoOrThrow);
    if (placed_) {
        CheckFree(placed_->address);
    }
    return replaced;
}

void AddressChange::CheckFree(const IpAddress& address) const {
    constexpr std::chrono::seconds Patience{3};
    if (IsOneTaken(route_, link_, {&address, 1}, Patience)) {
        throw AddressTaken(address);
    }
}

void AddressChange::Undo(Attempts& attempts) {
    attempts([&] {
        for (const AssignedAddress& address : ReadAddresses(route_, link_, family_)) {
            const auto before = PlaceOf(former_, address);
            if (before != former_.end() && address.isPermanent && !before->isPermanent) {
                attempts([&] { RestoreLifetime(route_, link_, *before); });
            }
        }
    });
    attempts([&] { Arrange(former_, std::ref(attempts)); });
}

// Those that were there before, or came by the change.
std::vector<AssignedAddress> AddressChange::OwnNow() const {
    Addresses now = ReadAddresses(route_, link_, family_);
    std::erase_if(now, [&](const AssignedAddress& address) {
        return !IsAmong(former_, address) && !(placed_ && address.IsSame(*placed_));
    });
    return now;
}

// The kernel puts an address of IPv4 behind the others and one of IPv6 in front of them: what
// stands at the other end in the wanted order stays, all else goes and comes again.
void AddressChange::Arrange(const std::vector<AssignedAddress>& wanted, const DoStep& attempt) {
    Addresses now = Ordered(OwnNow());
    Addresses arranged = Ordered(wanted);
    if (family_ == Family::IPv6) {
        std::ranges::reverse(now);
        std::ranges::reverse(arranged);
    }
    const Addresses kept = InPlace(arranged, now);
    // The last one first, since others may go with an earlier one.
    for (auto address = now.rbegin(); address != now.rend(); ++address) {
        if (!IsAmong(kept, *address)) {
            attempt([&] { RemoveAddress(route_, link_, *address); });
        }
    }
    now = OwnNow();
    std::ranges::copy_if(wanted, std::back_inserter(arranged), [](const AssignedAddress& address) {
        return !IsOrdered(address) && !address.isTemporary;
    });
    for (const AssignedAddress& address : arranged) {
        if (!IsAmong(now, address)) {
            attempt([&] { AddAddress(route_, link_, address); });
        }
    }
}

}  // namespace tavrolinux
