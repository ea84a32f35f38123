#include "simulator/host/host_file.h"

#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>

#include "simulator/host/default_host.h"
#include "simulator/host/former_hardware.h"
#include "simulator/host/host_json.h"

namespace tavrosim {
namespace {

using tavrolib::Json;
using tavrolib::Place;
using tavrolib::ShapeError;

// Asked before all else: what a newer format holds is unknown here.
void CheckFormat(const Json& json) {
    const Place root;
    WantObject(json, root);
    const auto found = json.find("format");
    if (found == json.end()) {
        return;
    }
    constexpr std::uint32_t Largest = std::numeric_limits<std::uint32_t>::max();
    const std::int64_t format = NumberAt(*found, 1, Largest, Place(root, "format"));
    if (format > HostFormat) {
        throw ShapeError("the file has format " + std::to_string(format) +
                         "; this library reads format " + std::to_string(HostFormat));
    }
}

}  // namespace

Host HostFromText(std::string_view text) {
    const Json json = tavrolib::ParseJson(text);
    CheckFormat(json);
    Host host;
    HostValueFromJson(HostTypeOf<Host>(), json, &host, Place());
    CheckHost(host);
    StateHardwareOnce(host);
    return host;
}

std::string TextFromHost(const Host& host) {
    constexpr int Indent = 2;
    return HostValueToJson(HostTypeOf<Host>(), &host).dump(Indent) + '\n';
}

Host DefaultHost() {
    return HostFromText(DefaultHostText());
}

}  // namespace tavrosim
