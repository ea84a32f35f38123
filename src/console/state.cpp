#include "console/state.h"

#include <utility>

#include "platform/input.h"
#include "platform/keyboard.h"
#include "platform/output.h"

namespace tavro::console {
namespace {

State* redirected = nullptr;

// What a pipe holds on most systems.
constexpr std::size_t OutputBlock = std::size_t{64} << 10U;

}  // namespace

Device StandardDevice() {
    Device device;
    device.writeBytes = platform::WriteStandardOutput;
    if (platform::StandardOutputIsUnicodeConsole()) {
        device.writeText = platform::WriteConsoleText;
    }
    device.codePage = platform::OutputCodePage();
    device.isTerminal = platform::StandardOutputIsTerminal();
    device.lineEnd = platform::OutputLineEnd();
    device.blockSize = device.isTerminal ? 0 : OutputBlock;
    device.readBytes = platform::ReadStandardInput;
    device.keysFromTerminal = platform::StandardInputIsTerminal();
    return device;
}

State& Current() {
    static State process(StandardDevice());
    return redirected == nullptr ? process : *redirected;
}

State* Exchange(State* state) {
    return std::exchange(redirected, state);
}

}  // namespace tavro::console
