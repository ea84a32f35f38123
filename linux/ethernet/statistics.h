#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "linux/netlink/ethtool_device.h"
#include "linux/netlink/ethtool_link.h"
#include "linux/netlink/links.h"
#include "tavroapi/ethernet_records.h"

// The counters of a port, and what is counted of them since they were reset: the kernel's own
// cannot be, so a reset remembers where they stood.
namespace tavrolinux {

using NamedCounters = std::map<std::string, std::uint64_t>;

// All that is counted of the port, as kernel and device count it each by themselves, by names that
// the state keeps: a driver may leave one source out for a moment.
NamedCounters CountersOf(const LinkCounters& link, const DeviceCounters& device,
                         const std::optional<Pause>& pause);

// Nothing where a counter stands below its baseline, which then belongs to an earlier life of the
// device. A counter that either lacks is left out: nobody knows what it has counted since then.
std::optional<NamedCounters> CountedSince(const NamedCounters& baseline,
                                          const NamedCounters& counters);

// Fills in what is counted; what is not stays an empty text. Where kernel and device count the same
// thing, what the device tells is taken: the kernel's stays 0 where the driver leaves it.
void TellCounters(const NamedCounters& counters, tavroapi::EthernetPortStatistics& record);

}  // namespace tavrolinux
