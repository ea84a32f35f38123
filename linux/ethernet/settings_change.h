#pragma once

#include "library/calls/outcome.h"
#include "linux/ethernet/device.h"
#include "tavroapi/ethernet_records.h"

// Changing adapter settings: all of them or none.
namespace tavrolinux {

// The device that settings are changed on. What it is told to do it does, or throws SystemFailure.
class EthernetDoor {
  public:
    EthernetDoor() = default;
    EthernetDoor(const EthernetDoor&) = delete;
    EthernetDoor& operator=(const EthernetDoor&) = delete;
    virtual ~EthernetDoor() = default;

    virtual EthernetDevice Read() = 0;
    virtual void SetFeatures(const NamedBits& wanted) = 0;
    virtual void SetCoalescing(const Coalescing& wanted) = 0;
    virtual void SetRings(const Rings& wanted) = 0;
    virtual void SetChannels(const Channels& wanted) = 0;
    virtual void SetPause(const Pause& wanted) = 0;
    virtual void SetWakeUp(const NamedBits& wanted) = 0;
    virtual void SetMtu(std::uint32_t mtu) = 0;
    virtual void SetAddress(const EthernetAddress& address) = 0;
    virtual void SetLinkModes(const LinkModes& wanted) = 0;

    // Gives the driver a moment before the device is read again.
    virtual void Wait() = 0;
};

// Tells every setting of the device.
void TellSettings(const EthernetDevice& device, tavroapi::AdapterSettings& settings);

// Makes the changes that are marked and differ from what the device has: all that are marked are
// checked before the first is made, and what was made is taken back when one fails or not all that
// are marked are found on the device afterwards. A number that the driver rounded counts as found.
// Throws SystemFailure where the system refused one and everything is again as it was, where a
// right is missing to know what there is to change, and where the interface is gone.
tavrolib::Outcome ChangeSettings(EthernetDoor& door, const tavroapi::AdapterSettings& wanted);

}  // namespace tavrolinux
