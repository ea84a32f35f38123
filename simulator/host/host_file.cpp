#include "simulator/host/host_file.h"

#include "simulator/host/default_host.h"
#include "simulator/host/host_json.h"

namespace tavrosim {

Host HostFromText(std::string_view text) {
    Host host;
    HostValueFromJson(ParseJson(text), host, Place());
    CheckHost(host);
    return host;
}

std::string TextFromHost(const Host& host) {
    constexpr int Indent = 2;
    return HostValueToJson(host).dump(Indent) + '\n';
}

Host DefaultHost() {
    return HostFromText(DefaultHostText());
}

}  // namespace tavrosim
