#pragma once

#include <cstdint>

namespace tavro {

// The numbers of the management library's localized messages, grouped by the area that shows them.
// The library owns every text.
enum class MessageId : std::uint32_t {
    // Start-up: the host has no adapter in a usable state.
    RestrictedStateNotice1 = 256,
    RestrictedStateNotice2 = 257,
    RestrictedStateNotice3 = 258,
    RestrictedStateNotice4 = 259,
    RestrictedStateNotice5 = 260,
    CommandBlocked = 261,

    // Adapters
    AdapterListTitle = 24833,
    AdapterName = 24834,
    PortFunctionsFailed = 24835,
    AdaptersFailed = 24836,
    HostNameFailed = 24837,
    HostNameUnavailable = 24838,
    NoAdapterListed = 24839,
    FunctionNumber = 24840,
    FunctionAddress = 24841,
    FunctionProtocol = 24842,
    FunctionSecondText = 24848,
    FunctionKey = 24849,

    // Command line
    UnknownCommand = 28674,
    TooFewArguments = 28675,
    InitializeFailed = 28676,
    LibraryMissing = 28677,
    UsageIntroduction1 = 28678,
    UsageIntroduction2 = 28679,
    UsageIntroduction3 = 28680,

    // Operands and answers
    InvalidAddress = 28673,
    InvalidPortNumber = 28684,
    InvalidVlanId = 28685,
    InvalidSubnetMask = 28686,
    InvalidGateway = 28687,
    AskYesOrNo = 28690,
    PleaseWait = 28691,
    AskTargetChapName = 28692,
    AskTargetSecret = 28693,
    AskInitiatorChapName = 28694,
    AskInitiatorSecret = 28695,
    ChapSecretRefused = 28696,
    InvalidPrefixLength = 28698,

    // iSCSI port
    IscsiPortInfoFailed = 25367,

    // TCP/IP settings of a port
    TcpIpApplied = 25857,
    TcpIpFailed = 25858,
    TcpIpAppliedAtRestart = 25860,
    TcpIpTitle = 30208,
    IPv4DhcpEnabled = 30210,
    IPv4Address = 30211,
    IPv4SubnetMask = 30212,
    IPv4Gateway = 30213,
    VlanEnabled = 30214,
    VlanId = 30215,
    IPv6DhcpEnabled = 30217,
    IPv6Address = 30224,
    IPv6PrefixLength = 30234,
    IPv6Gateway = 30235,
    IPv6LinkLocalAddress = 30237,
    VlanSection = 30238,
    IPv4Section = 30239,
    IPv6Section = 30240,

    // iSNS servers
    IsnsListTitle = 26113,
    IsnsListFailed = 26114,
    IsnsServerAdded = 26115,
    IsnsAddFailed = 26116,
    IsnsServerRemoved = 26117,
    IsnsListEmpty = 26118,

    // iSCSI initiator and ping
    InitiatorName = 26369,
    InitiatorSet = 26370,
    IscsiPingStarted = 26371,
    IscsiPingSent = 26372,
    IscsiPingReceived = 26373,
    IscsiPingFailed = 26374,
    IscsiPingAddress = 26375,
    IscsiPingLoss = 26376,

    // Ethernet
    WideRowLabel = 29726,
};

}  // namespace tavro
