#include "console/redirect.h"

#include <utility>

#include "console/state.h"

namespace tavro::console {
namespace {

Device MemoryDevice(std::string& input, std::string& output) {
    Device device;
    device.writeBytes = [&output](std::string_view bytes) {
        output += bytes;
        return true;
    };
    device.readBytes = [&input](char* buffer, std::size_t size) {
        const std::size_t count = input.copy(buffer, size);
        input.erase(0, count);
        return count;
    };
    return device;
}

}  // namespace

Redirect::Redirect(Device device)
    : state_(std::make_unique<State>(std::move(device))), former_(Exchange(state_.get())) {}

Redirect::~Redirect() {
    Exchange(former_);
}

MemoryConsole::MemoryConsole(std::string typed)
    : input_(std::move(typed)), redirect_(MemoryDevice(input_, output_)) {}

}  // namespace tavro::console
