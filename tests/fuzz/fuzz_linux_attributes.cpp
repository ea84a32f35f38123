// Feeds arbitrary texts to what reads the kernel's attributes.
#include <string>

#include "fuzz/require.h"
#include "linux/fcoe/kernel_texts.h"
#include "linux/inventory/fibre_channel_names.h"
#include "linux/system/attribute.h"

using namespace tavrolinux;

namespace {

void CheckNumbers(std::string_view text) {
    const auto number = NumberFrom(text);
    if (number && text.find('x') == std::string_view::npos) {
        const auto digits = text.find_first_not_of('0');
        Require(text.substr(digits == std::string_view::npos ? text.size() - 1 : digits) ==
                std::to_string(*number));
    }
    const auto behind = NumberBehind("host", text);
    Require(!behind || NumberFrom(text.substr(std::string_view("host").size())) == behind);
    if (number) {
        const std::string wwn = WwnText(*number);
        Require(wwn.empty() || wwn.size() == 23);
        const std::string digits = HexadecimalText(number, 6);
        Require(digits.empty() || NumberFrom("0x" + digits) == number);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = BytesOf(data, size);
    CheckNumbers(text);
    const std::string types = FcTypesText(text);
    Require(types.empty() ||
            (types.size() == 64 &&
             types.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos));
    Require(KnownText(text).size() <= text.size() && GigabitsText(text).size() <= text.size());
    Require(GigabitsText(text).find(" Gbit") == std::string::npos);
    Require(text.starts_with(LeadingDigits(text)));
    Require(FcLinkText(text).size() <= text.size() && ScsiStateText(text).size() <= text.size());
    Require(FcPortTypeText(text).size() <= text.size() + 1);
    return 0;
}
