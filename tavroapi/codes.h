#pragma once

#include <cstdint>

// The codes that the library hands out and its callers tell apart. Every other status is a failure
// that its error record explains.
namespace tavroapi {

// What a write leaves in its record (see `RecordWithCompletionCode`); 0 is applied.
inline constexpr std::int32_t ValueRefused = 5;
inline constexpr std::int32_t AppliedAtRestart = 201;

// The statuses of a ping that has completed although replies are missing.
inline constexpr std::uint32_t IscsiPingRepliesMissing = 36887;
inline constexpr std::uint32_t FcoePingRepliesMissing = 32768;

// What GetPartitionState tells of the adapter that a function belongs to. One that is partitioned
// for good cannot be changed.
inline constexpr std::uint32_t NotPartitioned = 1;
inline constexpr std::uint32_t PartitionedForGood = 2;
inline constexpr std::uint32_t Partitioned = 3;

// The state of an adapter in which commands that change adapters are blocked.
inline constexpr std::int32_t RestrictedAdapterState = 6;

}  // namespace tavroapi
