// Feeds arbitrary bytes to the reader and the writer of the file that states the initiator's name.
#include "fuzz/require.h"
#include "linux/iscsi/initiator_name.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tavrolinux;
    const std::string_view text = BytesOf(data, size);
    const std::string name = ParseInitiatorName(text);
    Require(name.size() <= LongestIscsiName && text.find(name) != std::string_view::npos);
    constexpr const char* Other = "iqn.2004-10.com.example:other";
    const std::string changed = WithInitiatorName(text, Other);
    Require(ParseInitiatorName(changed) == Other);
    // To set a name twice is to set it once.
    Require(WithInitiatorName(changed, Other) == changed);
    Require(!IsInitiatorName(text) || text.size() <= LongestIscsiName);
    return 0;
}
