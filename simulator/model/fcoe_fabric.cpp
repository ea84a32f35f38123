#include "simulator/model/fcoe_fabric.h"

#include <algorithm>
#include <set>

namespace tavrosim {
namespace {

bool IsSame(const std::string& wwn, const std::string& other) {
    const std::string normal = NormalIdentifier(wwn);
    return !normal.empty() && normal == NormalIdentifier(other);
}

bool IsSeenBy(const FabricTarget& target, const std::string& portWwn) {
    return target.initiators.empty() ||
           std::any_of(target.initiators.begin(), target.initiators.end(),
                       [&](const std::string& initiator) { return IsSame(initiator, portWwn); });
}

const FcoeBinding* BindingOf(const FabricTarget& target, const std::vector<FcoeBinding>& bindings) {
    const auto found = std::find_if(
        bindings.begin(), bindings.end(),
        [&](const FcoeBinding& binding) { return IsSame(binding.targetPortWwn, target.portWwn); });
    return found == bindings.end() ? nullptr : &*found;
}

std::set<std::uint32_t> NumbersBoundOnFirstBus(const std::vector<FcoeBinding>& bindings) {
    std::set<std::uint32_t> numbers;
    for (const FcoeBinding& binding : bindings) {
        if (binding.bus == 0) {
            numbers.insert(binding.target);
        }
    }
    return numbers;
}

}  // namespace

std::vector<SeenTarget> TargetsSeenBy(const FcoeFabric& fabric, const std::string& portWwn,
                                      const std::vector<FcoeBinding>& bindings) {
    const std::set<std::uint32_t> bound = NumbersBoundOnFirstBus(bindings);
    std::uint32_t next = 0;
    std::vector<SeenTarget> seen;
    for (const FabricTarget& target : fabric.targets) {
        if (!IsSeenBy(target, portWwn)) {
            continue;
        }
        if (const FcoeBinding* binding = BindingOf(target, bindings)) {
            seen.push_back({&target, binding->bus, binding->target});
            continue;
        }
        while (bound.contains(next)) {
            ++next;
        }
        seen.push_back({&target, 0, next++});
    }
    return seen;
}

const FabricTarget* FindFabricTarget(const FcoeFabric& fabric, const std::string& portWwn) {
    const auto found =
        std::find_if(fabric.targets.begin(), fabric.targets.end(),
                     [&](const FabricTarget& target) { return IsSame(target.portWwn, portWwn); });
    return found == fabric.targets.end() ? nullptr : &*found;
}

const FabricTarget* FindSeenTarget(const FcoeFabric& fabric, const FcoePart& part,
                                   const std::string& portWwn) {
    const FabricTarget* target = FindFabricTarget(fabric, portWwn);
    return target != nullptr && IsSeenBy(*target, part.portWwn) ? target : nullptr;
}

std::string FabricMac(const FcoeFabric& fabric, const std::string& fcid) {
    const std::string digits = fabric.fcMap + fcid;
    std::string mac;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        mac += (i == 0 ? "" : "-") + digits.substr(i, 2);
    }
    return mac;
}

}  // namespace tavrosim
