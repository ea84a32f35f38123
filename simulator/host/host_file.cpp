#include "simulator/host/host_file.h"

#include <nlohmann/json.hpp>

#include "simulator/host/default_host.h"
#include "simulator/host/host_json.h"

namespace tavrosim {

Host HostFromText(std::string_view text) {
    Host host;
    HostValueFromJson(HostTypeOf<Host>(), tavrolib::ParseJson(text), &host, tavrolib::Place());
    CheckHost(host);
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
