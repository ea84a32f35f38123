#pragma once

#include <cstdint>

namespace tavrolib {

// The statuses that our libraries give; 0 is success. A number means one thing, whichever library
// gives it, and the error record of a failure has the same code. Statuses that programs know are
// the contract's own.
enum class Status : std::uint32_t {
    Done = 0,

    // Any call.
    NotInitialized = 36865,
    ScriptUnusable = 36866,
    TraceUnusable = 36867,
    HostUnusable = 36868,
    HostNotWritten = 36869,
    UnknownOperation = 36870,
    UnknownIdentifier = 36871,
    MissingArgument = 36872,
    UnknownMessage = 36873,
    Internal = 36874,

    // iSCSI storage.
    UnknownPortal = 36897,
    UnknownIscsiTarget = 36898,
    TargetUnreachable = 36899,
    LoginRefused = 36900,
    UnknownSession = 36901,
    InUse = 36902,
    NoStatistics = 36903,
    SessionExists = 36904,

    // FCoE ports.
    UnknownFcoeTarget = 36913,
    NoReply = 36914,
    InvalidPingOption = 36915,
    InvalidVlanId = 36916,
    InvalidWwn = 36917,
    WwnInUse = 36918,
    UnknownVirtualPort = 36919,
    NoFcidLeft = 36920,

    // The iSCSI initiator and its iSNS servers.
    InvalidInitiatorName = 37121,
    ServerAlreadyListed = 37122,
    ServerNotListed = 37123,
    InvalidPingAddress = 37124,

    // TCP/IP settings.
    AddressInUse = 37377,
    NoLease = 37378,
    AddressInvalid = 37379,

    // Adapter settings of Ethernet functions.
    SettingValueRefused = 37440,
    SettingFixed = 37441,
    SettingMissing = 37442,

    // Booting.
    InvalidBootValue = 37633,
    BootTargetWithoutName = 37634,

    // Partitions and personalities.
    InvalidPartitionValue = 37889,
    PartitionsFixed = 37890,
    PersonalityFixed = 37891,

    // A host that is managed for real.
    NotOffered = 38145,     // this host has no such thing, or leaves it to something else
    RightMissing = 38146,   // this process may not do that
    SystemRefused = 38147,  // the kernel or the driver did not do it
    InterfaceGone = 38148,
    IdentifierAmbiguous = 38149,
    ManagedElsewhere = 38150,  // a network manager owns the interface
    StateUnusable = 38151,     // what this library keeps cannot be read or written
    NoSessionKept = 38152,     // the target accepted the login, but this host keeps no sessions
    ServerSilent = 38153,      // nothing answered in time
    AnswerInvalid = 38154,     // what answered does not speak the protocol
    ChapNotAsked = 38155,      // the target lets the initiator in without CHAP
    TargetRefused = 38156,     // the target does not do what it was asked to
};

}  // namespace tavrolib
