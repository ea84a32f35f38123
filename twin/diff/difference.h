#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "library/json/json.h"
#include "simulator/host/host.h"
#include "simulator/host/host_type.h"

// What differs between two states of a host, or between two hosts. Things are matched by what
// identifies them, not by place (twin/diff/identity.h); their order is no difference. What was
// captured is not compared.
namespace tavrohost {

struct DiffOptions {
    bool counters = false;     // whether counters and the last session number are compared
    bool withSecrets = false;  // whether the patch holds secrets
};

// Where in a host something stands. Texts are empty above the level that they name: what belongs to
// the host as a whole has none of the first four. Names can be empty too, so the level tells which
// of them there are.
struct HostPart {
    std::string adapter;   // its name
    std::string port;      // its name
    std::string function;  // as people name it, such as "iSCSI 02-00-5E-10-00-02"
    std::string key;       // the text by which commands address the function (see KeyOf)
    // The way from there on, such as "tcpIp.address" or "storage.portals[192.0.2.20:3260].login";
    // empty for the adapter, port or function itself.
    std::string member;
    enum class Level { Host, Adapter, Port, Function };
    Level level = Level::Host;  // of the smallest of them that it lies in, or is
};

// One thing that differs. An adapter, port or function that only one side has is one change, and so
// is everything else that comes or goes as a whole.
struct Change {
    enum class Kind { Added, Removed, Changed };
    Kind kind = Kind::Changed;
    HostPart where;  // names are those of before, where there are two
    // The values as the host file has them, null where there is none. Secrets are masked in both.
    tavrolib::Json before;
    tavrolib::Json after;
    const tavrosim::HostType* type = nullptr;  // of the values
    bool isElement = false;                    // of a list
};

// NOLINTNEXTLINE(bugprone-exception-escape): moving JSON does not throw
struct Difference {
    std::vector<Change> changes;
    // A JSON Patch (RFC 6902) that makes `after` of `before`, both as the host file has them with
    // all their members, the order of lists included. Counters are left out of it unless they are
    // compared. Without secrets, a changed one is left out, and the secrets of what is added are:
    // a member that the host file wants there is an empty text.
    tavrolib::Json patch;
};

Difference DifferenceOf(const tavrosim::Host& before, const tavrosim::Host& after,
                        const DiffOptions& options = {});

}  // namespace tavrohost
