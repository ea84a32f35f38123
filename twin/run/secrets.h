#pragma once

#include <set>
#include <string>

#include "library/json/json.h"
#include "simulator/host/host.h"

namespace tavrohost {

// The secrets in a host file's document, but for what it has captured, which holds none.
std::set<std::string> SecretsIn(const tavrolib::Json& hostFile);

// The host without any secret: each is an empty text.
tavrosim::Host WithoutSecrets(const tavrosim::Host& host);

// The host without the secrets that `before` has not: those that a command gave it.
tavrosim::Host WithoutNewSecrets(const tavrosim::Host& host, const tavrosim::Host& before);

}  // namespace tavrohost
