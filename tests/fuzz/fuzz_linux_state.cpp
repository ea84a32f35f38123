// Feeds arbitrary texts to the reader of the Linux library's own state. What it reads is written
// and read again without a difference; everything else is refused.
#include "fuzz/require.h"
#include "library/json/place.h"
#include "linux/state/state_json.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const tavrolinux::State state = tavrolinux::StateFromText(BytesOf(data, size));
        const std::string written = tavrolinux::TextFromState(state);
        Require(tavrolinux::TextFromState(tavrolinux::StateFromText(written)) == written);
    } catch (const tavrolib::ShapeError&) {
        return 0;
    }
    return 0;
}
