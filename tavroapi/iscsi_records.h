#pragma once

#include <array>
#include <cstdint>
#include <list>
#include <string>

#include "tavroapi/operations.h"

namespace tavroapi {

// How an initiator logs in: "Yes"/"No", the digests "No"/"CRC32C", the authentication "None",
// "Mutual CHAP" or "One-way CHAP", and the CHAP names and secrets.
struct LoginOptions {
    std::string multipath;
    std::string headerDigest;
    std::string dataDigest;
    std::string authentication;
    std::string targetChapName;
    std::string targetSecret;
    std::string initiatorChapName;
    std::string initiatorSecret;

    static constexpr std::array<std::size_t, 2> SecretPositions{5, 7};
    static constexpr auto Fields(auto visit) {
        return visit(Field{"multipath", &LoginOptions::multipath},
                     Field{"headerDigest", &LoginOptions::headerDigest},
                     Field{"dataDigest", &LoginOptions::dataDigest},
                     Field{"authentication", &LoginOptions::authentication},
                     Field{"targetChapName", &LoginOptions::targetChapName},
                     Field{"targetSecret", &LoginOptions::targetSecret},
                     Field{"initiatorChapName", &LoginOptions::initiatorChapName},
                     Field{"initiatorSecret", &LoginOptions::initiatorSecret});
    }
};

// The host's iSCSI initiator: its name and how it logs in.
struct InitiatorRecord {
    std::string name;
    LoginOptions login;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"name", &InitiatorRecord::name},
                     Field{"login", &InitiatorRecord::login});
    }
};

// What an iSCSI port is asked to ping: how often, with how many bytes, how long to wait for each
// reply (ms), and where; numbers as decimal texts.
struct IscsiPingRequest {
    std::string count;
    std::string packetSize;
    std::string timeout;
    std::string address;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"count", &IscsiPingRequest::count},
                     Field{"packetSize", &IscsiPingRequest::packetSize},
                     Field{"timeout", &IscsiPingRequest::timeout},
                     Field{"address", &IscsiPingRequest::address});
    }
};

// What came of a ping. `received` is the number of replies in decimal.
struct IscsiPingResult {
    std::string libraryText;
    std::string received;

    static constexpr auto Fields(auto visit) {
        return visit(Field{"libraryText", &IscsiPingResult::libraryText},
                     Field{"received", &IscsiPingResult::received});
    }
};

template <>
struct OperationRecords<OperationCode::ReadInitiator> : Exchanges<NoRecord, InitiatorRecord> {};
template <>
struct OperationRecords<OperationCode::SetInitiator> : Exchanges<InitiatorRecord, NoRecord> {};
template <>
struct OperationRecords<OperationCode::PingFromIscsiPort>
    : Exchanges<IscsiPingRequest, IscsiPingResult> {};
template <>
struct OperationRecords<OperationCode::ListIsnsServers>
    : Exchanges<NoRecord, std::list<std::string>> {};
template <>
struct OperationRecords<OperationCode::AddIsnsServer> : Exchanges<CharacterString, NoRecord> {};
template <>
struct OperationRecords<OperationCode::RemoveIsnsServer> : Exchanges<CharacterString, NoRecord> {};

using InitiatorOperations =
    OperationList<OperationCode::ReadInitiator, OperationCode::SetInitiator,
                  OperationCode::PingFromIscsiPort, OperationCode::ListIsnsServers,
                  OperationCode::AddIsnsServer, OperationCode::RemoveIsnsServer>;

}  // namespace tavroapi
