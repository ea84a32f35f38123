#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "tavroapi/operations.h"

namespace tavroapi {

// How a port boots from iSCSI targets: 32 texts. Switches are "Enabled" or "Disabled", numbers are
// decimal texts.
using IscsiBootConfig = TextRecord<32, 13, 20, 27>;

// The positions in `IscsiBootConfig` whose meaning is known.
namespace iscsi_boot {
inline constexpr std::size_t TcpIpByDhcp = 0;
inline constexpr std::size_t ParametersByDhcp = 2;
inline constexpr std::size_t LinkUpDelay = 4;  // seconds
inline constexpr std::size_t RetryCount = 6;
inline constexpr std::size_t IpAddress = 8;
inline constexpr std::size_t SubnetMask = 9;
inline constexpr std::size_t Gateway = 10;
inline constexpr std::size_t InitiatorName = 11;
inline constexpr std::size_t ChapName = 12;
inline constexpr std::size_t ChapSecret = 13;
inline constexpr std::size_t FirstTarget = 14;   // here start the seven texts of a target
inline constexpr std::size_t SecondTarget = 21;  // and here those of the other
inline constexpr std::size_t AddressBinding = 28;
inline constexpr std::size_t BoundAddress = 29;
inline constexpr std::size_t TargetIsFirstDisk = 30;
inline constexpr std::size_t BootFromTarget = 31;

// Where a target's texts stand, counted from its first.
inline constexpr std::size_t TargetUsed = 0;
inline constexpr std::size_t TargetAddress = 1;
inline constexpr std::size_t TargetPort = 2;
inline constexpr std::size_t TargetLun = 3;
inline constexpr std::size_t TargetName = 4;
inline constexpr std::size_t TargetChapName = 5;
inline constexpr std::size_t TargetChapSecret = 6;
}  // namespace iscsi_boot

// One target that a port may boot from: the target, the item of its LUN list, and whether the entry
// is in use ("Enabled" or "Disabled").
struct FcoeBootTarget {
    std::string target;
    std::string lunItem;
    std::string state;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"target", &FcoeBootTarget::target},
                     Field{"lunItem", &FcoeBootTarget::lunItem},
                     Field{"state", &FcoeBootTarget::state});
    }
};

// How a port boots from FCoE targets. `bootState` is "Enabled", "Disabled" or "One Time Disabled",
// `secondSwitch` "Enabled" or "Disabled". What the numbers mean is the library's own; A goes
// up to 255, B to 60, C to 8.
struct FcoeBootConfig {
    std::string bootState;
    std::string secondSwitch;
    std::string bootCodeVersion;
    std::uint32_t numberA = 0;
    std::uint32_t numberB = 0;
    std::uint32_t numberC = 0;
    std::array<FcoeBootTarget, 8> targets;

    static constexpr auto Fields(auto visit) {
        return visit(
            Field{"bootState", &FcoeBootConfig::bootState},
            Field{"secondSwitch", &FcoeBootConfig::secondSwitch},
            Field{"text3", &FcoeBootConfig::bootCodeVersion},
            Field{"numberA", &FcoeBootConfig::numberA}, Field{"numberB", &FcoeBootConfig::numberB},
            Field{"numberC", &FcoeBootConfig::numberC}, Field{"targets", &FcoeBootConfig::targets});
    }
};

template <>
struct OperationRecords<OperationCode::ReadIscsiBoot> : Exchanges<NoRecord, IscsiBootConfig> {};
template <>
struct OperationRecords<OperationCode::WriteIscsiBoot> : Exchanges<IscsiBootConfig, NoRecord> {};
template <>
struct OperationRecords<OperationCode::ReadFcoeBoot> : Exchanges<NoRecord, FcoeBootConfig> {};
template <>
struct OperationRecords<OperationCode::WriteFcoeBoot> : Exchanges<FcoeBootConfig, NoRecord> {};

using BootOperations = OperationList<OperationCode::ReadIscsiBoot, OperationCode::WriteIscsiBoot,
                                     OperationCode::ReadFcoeBoot, OperationCode::WriteFcoeBoot>;

}  // namespace tavroapi
