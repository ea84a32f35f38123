#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "library/calls/refusals.h"
#include "simulator/host/host.h"
#include "simulator/host/lookup.h"
#include "simulator/model/model.h"

// What the model functions of FCoE ports share: who sees which target.
namespace tavrosim {

using tavrolib::UnknownFcoeTarget;

// The one class of service that ports and targets have.
inline constexpr const char* ClassOfService = "Class 3";

// A target as one port sees it: with its place on the operating system's SCSI bus.
struct SeenTarget {
    const FabricTarget* target = nullptr;
    std::uint32_t bus = 0;
    std::uint32_t number = 0;
};

// The targets that the port with that WWN sees, in the fabric's order. Bound targets have the
// place of their binding, the others the first free numbers of bus 0.
std::vector<SeenTarget> TargetsSeenBy(const FcoeFabric& fabric, const std::string& portWwn,
                                      const std::vector<FcoeBinding>& bindings);

// The target of that port WWN in the fabric, whoever sees it; null when there is none.
const FabricTarget* FindFabricTarget(const FcoeFabric& fabric, const std::string& portWwn);

// The target of that port WWN if the function sees it, else null.
const FabricTarget* FindSeenTarget(const FcoeFabric& fabric, const FcoePart& part,
                                   const std::string& portWwn);

// The MAC that the fabric assigns to a port of that FCID.
std::string FabricMac(const FcoeFabric& fabric, const std::string& fcid);

}  // namespace tavrosim
