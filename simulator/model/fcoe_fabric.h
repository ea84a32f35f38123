#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/host/host.h"
#include "simulator/host/lookup.h"
#include "simulator/model/model.h"

/// What the model functions of FCoE ports share: who sees which target, and refusals.
namespace tavrosim {

/// The statuses of refusals that concern FCoE ports.
enum class FcoeStatus : std::uint32_t {
    UnknownTarget = 36913,
    NoReply = 36914,
    InvalidPingOption = 36915,
    InvalidVlanId = 36916,
    InvalidWwn = 36917,
    WwnInUse = 36918,
    UnknownVirtualPort = 36919,
    NoFcidLeft = 36920,
};

Outcome RefusedFcoe(FcoeStatus status, std::wstring message, std::wstring action);

/// A text as the caller gave it, in quotation marks, for messages.
std::wstring QuotedText(std::string_view text);

/// The FCoE function with that port WWN, or the refusal of the request.
template <class AnyHost>
struct FcoeRequest {
    FcoeRequest(AnyHost& host, const std::string& request)
        : located(FindFcoeFunction(host, request)),
          refusal(located ? Done() : UnknownIdentifier(request, L"FCoE")) {}

    bool IsRefused() const { return !refusal.IsDone(); }
    auto& Part() const { return *located.function->fcoe; }

    Located<AnyHost> located;
    Outcome refusal;
};

/// A target as one port sees it: with its place on the operating system's SCSI bus.
struct SeenTarget {
    const FabricTarget* target = nullptr;
    std::uint32_t bus = 0;
    std::uint32_t number = 0;
};

/// The targets that the port with that WWN sees, in the fabric's order. Bound targets have the
/// place of their binding, the others the first free numbers of bus 0.
std::vector<SeenTarget> TargetsSeenBy(const FcoeFabric& fabric, const std::string& portWwn,
                                      const std::vector<FcoeBinding>& bindings);

/// The target of that port WWN in the fabric, whoever sees it; null when there is none.
const FabricTarget* FindFabricTarget(const FcoeFabric& fabric, const std::string& portWwn);

/// The target of that port WWN if the function sees it, else null.
const FabricTarget* FindSeenTarget(const FcoeFabric& fabric, const FcoePart& part,
                                   const std::string& portWwn);

Outcome UnknownFcoeTarget(const std::string& portWwn);

/// The MAC that the fabric assigns to a port of that FCID.
std::string FabricMac(const FcoeFabric& fabric, const std::string& fcid);

}  // namespace tavrosim
