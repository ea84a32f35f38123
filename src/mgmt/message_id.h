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

    // Ethernet
    WideRowLabel = 29726,
};

}  // namespace tavro
