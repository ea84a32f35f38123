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

// The target lets the initiator in without asking for its CHAP name and secret, wants another
// algorithm of CHAP, or does not agree to the header digest.
tavrolib::Outcome NotChallenged(const Portal& portal, const std::string& target);
tavrolib::Outcome UnknownAlgorithm(const Portal& portal, const std::string& target);
tavrolib::Outcome HeaderDigestRefused(const Portal& portal, const std::string& target);

// The target replies to the login in several pieces.
tavrolib::Outcome LoginInPieces(const Portal& portal, const std::string& target);

// No connection can be held to an interface of that name.
tavrolib::Outcome InterfaceUnusable(const std::string& interface);

// The target refuses what a step asks of it; `reason` is its own, by number: what ScsiReason makes
// of the status of a command and the key of its sense (0 for none), or a byte as "0x05".
std::string ScsiReason(std::uint8_t status, std::uint8_t senseKey);
std::string ByteText(std::uint8_t byte);
tavrolib::Outcome RequestRefused(const Portal& portal, const std::string& step,
                                 const std::string& reason);

// The target tells more than the library reads; `limit` says how much that is.
tavrolib::Outcome TellsTooMuch(const Portal& portal, const std::string& limit);

// The target did not prove who it is, as mutual CHAP wants it.
tavrolib::Outcome TargetNotProven(const Portal& portal, const std::string& target);

}  // namespace tavrolinux
