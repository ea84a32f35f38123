#pragma once

#include <set>
#include <string>

#include "simulator/host/host.h"
#include "twin/capture/told.h"

// The parts of a host's model that one function tells of. `key` is what its requests name it by.
namespace tavrohost {

// States a text of the function's hardware, unless it is empty.
void StateText(std::optional<std::string>& own, const std::string& told);

tavrosim::EthernetPart EthernetPartFrom(const Told& told, const std::string& key,
                                        const std::string& interfaceName);

// The highest speed of the function is told nowhere, see SettleIscsiSpeeds.
tavrosim::IscsiPart IscsiPartFrom(const Told& told, const std::string& key);

// Takes the speed of an iSCSI function's link for its highest one where no Ethernet function of the
// port has chosen another.
void SettleIscsiSpeeds(const Told& told, tavrosim::Port& port);

// `identifiers` are those of the host's FCoE functions so far, in normal form; those of the virtual
// ports are added, and virtual ports that have one of them, or none, are left out.
tavrosim::FcoePart FcoePartFrom(const Told& told, const std::string& key,
                                const std::string& nodeWwn, std::set<std::string>& identifiers);

// The targets of the network that iSCSI functions of the host know, and where.
std::vector<tavrosim::NetworkTarget> NetworkTargetsFrom(const Told& told,
                                                        const tavrosim::Host& host);

// The fabric that FCoE functions of the host are attached to, as the first one tells it, with the
// targets that any of them sees.
tavrosim::FcoeFabric FabricFrom(const Told& told, const tavrosim::Host& host);

// The partitions of an adapter and the personalities of its ports, as its functions tell them.
void TellPartitions(const Told& told, tavrosim::Adapter& adapter);

// Whether a text is one of the identifiers that a host file wants.
bool IsMac(const std::string& text);
bool IsWwn(const std::string& text);

}  // namespace tavrohost
