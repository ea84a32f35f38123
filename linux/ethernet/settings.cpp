// The adapter settings of real devices.
#include <chrono>
#include <thread>

#include "linux/ethernet/settings_change.h"
#include "linux/serve/operation.h"
#include "linux/serve/turn.h"

namespace tavrolinux {
namespace {

using tavroapi::AdapterSettings;
using tavroapi::OperationCode;

class KernelDoor : public EthernetDoor {
  public:
    explicit KernelDoor(const Place& at) : adapter_(at.adapter), interface_(at.interface) {}

    EthernetDevice Read() override {
        EthernetDevice device = ReadEthernetDevice(route_, ethtool_, adapter_, interface_);
        link_ = device.link;
        return device;
    }
    void SetFeatures(const NamedBits& wanted) override { WriteFeatures(ethtool_, link_, wanted); }
    void SetCoalescing(const Coalescing& wanted) override {
        WriteCoalescing(ethtool_, link_, wanted);
    }
    void SetRings(const Rings& wanted) override { WriteRings(ethtool_, link_, wanted); }
    void SetChannels(const Channels& wanted) override { WriteChannels(ethtool_, link_, wanted); }
    void SetPause(const Pause& wanted) override { WritePause(ethtool_, link_, wanted); }
    void SetWakeUp(const NamedBits& wanted) override { WriteWakeUp(ethtool_, link_, wanted); }
    void SetMtu(std::uint32_t mtu) override { tavrolinux::SetMtu(route_, link_, mtu); }
    void SetAddress(const EthernetAddress& address) override {
        tavrolinux::SetAddress(route_, link_, address);
    }
    void SetLinkModes(const LinkModes& wanted) override { WriteLinkModes(ethtool_, link_, wanted); }
    void Wait() override {
        constexpr std::chrono::milliseconds Moment{50};
        std::this_thread::sleep_for(Moment);
    }

  private:
    Socket route_{NETLINK_ROUTE};
    Ethtool ethtool_;
    const Adapter& adapter_;
    const Interface& interface_;
    Link link_;  // as it was read last
};

Outcome ReadSettings(const Place& at, AdapterSettings& settings) {
    TellSettings(KernelDoor(at).Read(), settings);
    return Done();
}

Outcome WriteSettings(const Place& at, const AdapterSettings& wanted) {
    const auto turn = TakeTurn(at.machine.SystemRoots());
    KernelDoor door(at);
    return ChangeSettings(door, wanted);
}

}  // namespace

std::span<const Operation> AdapterSettingsOperations() {
    static constexpr Operation Rows[] = {
        OnFunction<OperationCode::ReadAdapterSettings, FunctionKind::Ethernet, ReadSettings>(),
        OnFunction<OperationCode::WriteAdapterSettings, FunctionKind::Ethernet, WriteSettings>(),
        OnFunction<OperationCode::ExportAdapterSettings, FunctionKind::Ethernet, ReadSettings>()};
    return Rows;
}

}  // namespace tavrolinux
