#pragma once

#include <random>

#include "library/json/json.h"
#include "simulator/host/host.h"

namespace tavrohost_test {

// A text that every secret of a mutated host begins with, and nothing else holds.
inline constexpr const char* SecretStart = "hidden-";

// The host after `count` random changes: a value, an element of a list or an optional part is
// changed, added or removed, or a list gets another order. What comes of it need not be a host that
// the library takes, but every function has a MAC.
tavrosim::Host Mutated(const tavrosim::Host& host, int count, std::mt19937& random);

// The host as JSON with all its members.
tavrolib::Json JsonOf(const tavrosim::Host& host);

}  // namespace tavrohost_test
