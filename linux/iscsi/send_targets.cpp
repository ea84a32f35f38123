#include "linux/iscsi/send_targets.h"

#include "linux/iscsi/pdu.h"

namespace tavrolinux {

std::optional<std::vector<DiscoveredTarget>> ParseSendTargets(WireBytes text) {
    const auto keys = ParseTextKeys(text);
    if (!keys) {
        return std::nullopt;
    }
    std::vector<DiscoveredTarget> targets;
    for (const TextKey& key : *keys) {
        if (key.key == "TargetName") {
            if (targets.size() > MostTargets) {
                break;
            }
            targets.push_back({std::string(key.value), {}});
        } else if (key.key != "TargetAddress" || targets.empty()) {
            return std::nullopt;
        } else if (auto& portals = targets.back().portals; portals.size() <= MostPortals) {
            if (auto portal = ParseAnnouncedPortal(key.value)) {
                portals.push_back(std::move(*portal));
            }
        }
    }
    return targets;
}

}  // namespace tavrolinux
