#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tavrolinux {

// What a device's maker wrote into it (PCI vital product data). Empty where that is missing, or is
// no text.
struct ProductData {
    std::string serialNumber;
    std::string partNumber;
};

// The product data in these bytes. They are read up to the first that is none: what stands before
// it counts. A text is printable ASCII; the blanks and zeros around it are filling.
ProductData ParseProductData(std::string_view bytes);

// The product data of the device, as far as it can be read; nothing when it has none, or this
// process may not read it.
// `device` is its folder in sysfs.
std::optional<ProductData> ReadProductData(const std::filesystem::path& device);

}  // namespace tavrolinux
