#include "linux/inventory/pci.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <memory>
#include <new>
#include <string_view>

// The library's header stands in no C++ linkage of its own.
extern "C" {
#include <pci/pci.h>
}

#include "linux/system/attribute.h"

namespace tavrolinux {
namespace {

// "0000:03:00.1"
std::optional<PciPlace> PlaceFrom(const std::filesystem::path& device) {
    const std::string text = device.filename().string();
    const auto point = text.find_last_of('.');
    std::uint32_t function = 0;
    if (point == std::string::npos) {
        return std::nullopt;
    }
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + point + 1, end, function, 16);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return PciPlace{text.substr(0, point), function, device};
}

std::string NumberText(std::uint64_t number) {
    constexpr std::size_t Digits = 4;
    std::array<char, 16> digits{};
    const char* const end =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
    const std::string text(digits.data(), static_cast<std::size_t>(end - digits.data()));
    return text.size() < Digits ? std::string(Digits - text.size(), '0') + text : text;
}

// What the library is told to do with what it notices. The type is its own.
void PassOver(char* /*message*/, ...) {}  // NOLINT(cert-dcl50-cpp)

}  // namespace

std::optional<PciPlace> PciPlaceOf(std::filesystem::path device) {
    while (device.has_relative_path()) {
        const std::string bus = LinkedName(device / "subsystem");
        if (bus == "pci") {
            return PlaceFrom(device);
        }
        if (bus != "virtio") {
            return std::nullopt;
        }
        device = device.parent_path();
    }
    return std::nullopt;
}

std::string PciDeviceName(const PciPlace& place) {
    const auto vendor = ReadNumber(place.device / "vendor").value_or(0);
    const auto device = ReadNumber(place.device / "device").value_or(0);
    const std::unique_ptr<pci_access, decltype(&pci_cleanup)> access(pci_alloc(), &pci_cleanup);
    if (!access) {
        throw std::bad_alloc();
    }
    // Without pci_init, which would set these: the bus is read from sysfs, and only the table of
    // names is wanted.
    access->warning = PassOver;
    access->debug = PassOver;
    constexpr int Longest = 256;
    std::array<char, Longest> text{};
    const char* const name =
        pci_lookup_name(access.get(), text.data(), Longest,
                        PCI_LOOKUP_VENDOR | PCI_LOOKUP_DEVICE | PCI_LOOKUP_NO_NUMBERS,
                        static_cast<int>(vendor), static_cast<int>(device));
    return name != nullptr ? name : "Device " + NumberText(vendor) + ':' + NumberText(device);
}

}  // namespace tavrolinux
