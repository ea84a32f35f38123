// The operands that commands take, by the names under which the usage screen and the manual show
// them. A row of the command table says where one stands, a handler asks for it by its object.
#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

namespace tavro {

// What is typed for an operand. What completes or describes a command line goes by it; the grammar
// looks at none, and how strict a handler is, is its own affair.
enum class OperandKind {
    Mac,
    Wwn,
    IscsiName,
    IPv4Address,
    IPv6Address,
    IPAddress,     // of either kind
    Number,        // decimal, from `lowest` to `highest`
    NumberList,    // such numbers, separated by commas
    Word,          // the name itself
    LoginOptions,  // any number of the words that ParseLoginOptions knows
};

struct Operand {
    std::string_view name;
    OperandKind kind;
    std::int32_t lowest = 0;
    std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    // Whether more of the kind may follow, up to the last argument.
    bool isRepeated = false;
};

namespace operand {

inline constexpr Operand PortMac{"MAC", OperandKind::Mac};
inline constexpr Operand PortWwn{"portWWN", OperandKind::Wwn};

inline constexpr Operand InitiatorName{"Initiator Name", OperandKind::IscsiName};
inline constexpr Operand LoginOptions{"login options", OperandKind::LoginOptions};
inline constexpr Operand IsnsServer{"iSNS Server IP", OperandKind::IPv4Address};
inline constexpr Operand PingAddress{"IP Address", OperandKind::IPAddress};

inline constexpr Operand PortalAddress{"Portal IP", OperandKind::IPAddress};
inline constexpr Operand TargetAddress{"IP", OperandKind::IPAddress};
inline constexpr Operand PortNumber{"Port Number", OperandKind::Number, 0, 65535};
inline constexpr Operand TargetName{"Target Name", OperandKind::IscsiName};
inline constexpr Operand SessionId{"Session ID", OperandKind::Number};
inline constexpr Operand SessionIds{"Session ID", OperandKind::NumberList, 0, 99999};

inline constexpr Operand VlanId{"VLAN ID", OperandKind::Number, 0, 4094};
inline constexpr Operand IPv4Family{"-ipv4", OperandKind::Word};
inline constexpr Operand IPv4Address{"IP Address", OperandKind::IPv4Address};
inline constexpr Operand SubnetMask{"Subnet Mask", OperandKind::IPv4Address};
inline constexpr Operand IPv4Gateway{"Gateway", OperandKind::IPv4Address};
inline constexpr Operand IPv6Family{"-ipv6", OperandKind::Word};
inline constexpr Operand IPv6Address{"IP Address", OperandKind::IPv6Address};
inline constexpr Operand PrefixLength{"Prefix Length", OperandKind::Number, 0, 128};
inline constexpr Operand IPv6Gateway{"Gateway", OperandKind::IPv6Address};

// Targets on the Fibre Channel side go by the WWN of their port.
inline constexpr Operand FcoeTarget{"Target Name", OperandKind::Wwn};
inline constexpr Operand PingCountOption{"-pcount", OperandKind::Word};
inline constexpr Operand PingCount{"Count", OperandKind::Number};
inline constexpr Operand PingTimeoutOption{"-timeout", OperandKind::Word};
inline constexpr Operand PingTimeout{"time in secs", OperandKind::Number};
inline constexpr Operand VirtualPort{"WWN", OperandKind::Wwn};
inline constexpr Operand VirtualPorts{.name = "WWN", .kind = OperandKind::Wwn, .isRepeated = true};

}  // namespace operand

}  // namespace tavro
