// Feeds arbitrary bytes to the reader of a PCI device's vital product data.
#include <algorithm>

#include "fuzz/require.h"
#include "linux/inventory/vpd.h"

namespace {

void CheckText(std::string_view text, std::string_view bytes) {
    Require(
        std::all_of(text.begin(), text.end(), [](char one) { return one >= ' ' && one <= '~'; }));
    Require(text.empty() || (text.front() != ' ' && text.back() != ' '));
    Require(bytes.find(text) != std::string_view::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = BytesOf(data, size);
    const tavrolinux::ProductData product = tavrolinux::ParseProductData(bytes);
    CheckText(product.serialNumber, bytes);
    CheckText(product.partNumber, bytes);
    return 0;
}
