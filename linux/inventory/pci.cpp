#include "linux/inventory/pci.h"

#include <array>
#include <charconv>
#include <csetjmp>
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

// Where the C library's lookup goes on when its table of names is damaged: its way to tell that
// must not return, and nothing may be thrown through it.
thread_local std::jmp_buf afterLookup;

[[gnu::noreturn]] void GiveUp(char* /*message*/, ...) {
    std::longjmp(afterLookup, 1);
}

void SayNothing(char* /*message*/, ...) {}

constexpr int LongestName = 256;

// The name in `text`; null where there is none. Without pci_init: the bus is read from sysfs, and
// only the table of names is wanted. The device manager's copy of it is left out: asking for that
// leaks where there is none.
const char* LookUp(pci_access& access, std::array<char, LongestName>& text, int vendor,
                   int device) {
    if (setjmp(afterLookup) != 0) {
        return nullptr;
    }
    return pci_lookup_name(
        &access, text.data(), LongestName,
        PCI_LOOKUP_VENDOR | PCI_LOOKUP_DEVICE | PCI_LOOKUP_NO_NUMBERS | PCI_LOOKUP_NO_HWDB, vendor,
        device);
}

std::string NumberText(std::uint64_t number) {
    constexpr std::size_t Digits = 4;
    std::array<char, 16> digits{};
    const char* const end =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
    const std::string text(digits.data(), static_cast<std::size_t>(end - digits.data()));
    return text.size() < Digits ? std::string(Digits - text.size(), '0') + text : text;
}

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

PciNames::PciNames() : access_(pci_alloc(), &pci_cleanup) {
    if (!access_) {
        throw std::bad_alloc();
    }
    access_->error = &GiveUp;
    access_->warning = &SayNothing;
    access_->debug = &SayNothing;
}

std::string PciNames::NameOf(const PciPlace& place) {
    const auto vendor = ReadNumber(place.device / "vendor").value_or(0);
    const auto device = ReadNumber(place.device / "device").value_or(0);
    std::array<char, LongestName> text{};
    const char* const name =
        LookUp(*access_, text, static_cast<int>(vendor), static_cast<int>(device));
    return name != nullptr ? name : "Device " + NumberText(vendor) + ':' + NumberText(device);
}

}  // namespace tavrolinux
