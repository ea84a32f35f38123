#pragma once

#include <optional>
#include <vector>

#include "linux/iscsi/big_endian.h"
#include "linux/iscsi/wire.h"

namespace tavrolinux {

// The targets that the text of a portal tells, in its order: each with those of its portals that
// can be read. Nothing where it is no such text. It is read no further than one target beyond
// MostTargets, and one portal beyond MostPortals.
std::optional<std::vector<DiscoveredTarget>> ParseSendTargets(WireBytes text);

}  // namespace tavrolinux
