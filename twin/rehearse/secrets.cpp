#include "twin/rehearse/secrets.h"

#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "simulator/host/host_json.h"
#include "twin/diff/identity.h"

namespace tavrohost {
namespace {

using tavrosim::Host;

void ForEachSecret(Json& json, const std::function<void(std::string& secret)>& visit) {
    for (auto& [key, value] : json.items()) {
        if (value.is_structured()) {
            ForEachSecret(value, visit);
        } else if (json.is_object() && IsSecretMember(key) && value.is_string()) {
            visit(value.get_ref<std::string&>());
        }
    }
}

Json ModelOf(const Host& host) {
    return HostValueToJson(tavrosim::HostTypeOf<Host>(), &host);
}

Host Blanked(const Host& host, const std::set<std::string>& kept) {
    Json json = ModelOf(host);
    ForEachSecret(json, [&kept](std::string& secret) {
        if (!kept.contains(secret)) {
            secret.clear();
        }
    });
    Host blanked;
    HostValueFromJson(tavrosim::HostTypeOf<Host>(), json, &blanked, {});
    blanked.captured = host.captured;
    blanked.asCaptured = host.asCaptured;
    return blanked;
}

}  // namespace

Host WithoutSecrets(const Host& host) {
    return Blanked(host, {});
}

Host WithoutNewSecrets(const Host& host, const Host& before) {
    std::set<std::string> known;
    Json json = ModelOf(before);
    ForEachSecret(json, [&known](const std::string& secret) { known.insert(secret); });
    return Blanked(host, known);
}

}  // namespace tavrohost
