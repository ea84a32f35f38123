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
    : state(std::make_unique<State>(std::move(device))), former(Exchange(state.get())) {}

Redirect::~Redirect() {
    Exchange(former);
}

MemoryConsole::MemoryConsole(std::string typed)
    : input(std::move(typed)), redirect(MemoryDevice(input, output)) {}

}  // namespace tavro::console
