#include "twin/run/secrets.h"

#include <nlohmann/json.hpp>
#include <type_traits>

#include "simulator/host/host_json.h"
#include "twin/diff/identity.h"

namespace tavrohost {
namespace {

using tavrosim::Host;

// Calls `visit` with each secret of the document, const as that is.
template <class AnyJson, class Visitor>
void ForEachSecret(AnyJson& json, const Visitor& visit) {
    using Text = std::conditional_t<std::is_const_v<AnyJson>, const std::string, std::string>;
    for (auto& [key, value] : json.items()) {
        if (value.is_structured()) {
            ForEachSecret(value, visit);
        } else if (json.is_object() && IsSecretMember(key) && value.is_string()) {
            visit(value.template get_ref<Text&>());
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

std::set<std::string> SecretsIn(const Json& hostFile) {
    std::set<std::string> secrets;
    for (const auto& [key, value] : hostFile.items()) {
        if (value.is_structured() && key != "captured") {
            ForEachSecret(value, [&](const std::string& secret) { secrets.insert(secret); });
        }
    }
    return secrets;
}

Host WithoutSecrets(const Host& host) {
    return Blanked(host, {});
}

Host WithoutNewSecrets(const Host& host, const Host& before) {
    return Blanked(host, SecretsIn(ModelOf(before)));
}

}  // namespace tavrohost
