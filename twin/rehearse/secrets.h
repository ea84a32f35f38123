#pragma once

#include "simulator/host/host.h"

namespace tavrohost {

// The host without any secret: each is an empty text.
tavrosim::Host WithoutSecrets(const tavrosim::Host& host);

// The host without the secrets that `before` has not: those that a command gave it.
tavrosim::Host WithoutNewSecrets(const tavrosim::Host& host, const tavrosim::Host& before);

}  // namespace tavrohost
