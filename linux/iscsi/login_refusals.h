#pragma once

#include <cstdint>
#include <string>

#include "library/calls/outcome.h"
#include "linux/iscsi/portal.h"

// The refusals of what did not come about over the wire.
namespace tavrolinux {

// Nobody takes the connection; `reason` is the system's.
tavrolib::Outcome Unreachable(const Portal& portal, const std::string& reason);

// Nothing came within the time limit of a step; `step` names it in the details.
tavrolib::Outcome Silent(const Portal& portal, const std::string& step);

// What came is no iSCSI, or breaks off; `step` names when.
tavrolib::Outcome Invalid(const Portal& portal, const std::string& step);
tavrolib::Outcome ConnectionEnded(const Portal& portal, const std::string& step);

// The target answered the login with a status other than success.
tavrolib::Outcome LoginRefusal(const Portal& portal, const std::string& target,
                               std::uint16_t status);

// The target did not prove who it is, as mutual CHAP wants it.
tavrolib::Outcome TargetNotProven(const Portal& portal, const std::string& target);

}  // namespace tavrolinux
