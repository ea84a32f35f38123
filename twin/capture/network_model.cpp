#include <algorithm>
#include <map>
#include <utility>

#include "simulator/model/numbers.h"
#include "twin/capture/function_model.h"

namespace tavrohost {
namespace {

using tavroapi::OperationCode;
using tavrosim::IscsiPortal;
using tavrosim::NetworkTarget;

// The targets so far, found by their names.
class NetworkTargets {
  public:
    // The target; the reference holds until another one is asked for.
    NetworkTarget& Named(const std::string& name) {
        const auto [found, isNew] = places_.try_emplace(name, targets_.size());
        if (isNew) {
            targets_.emplace_back().name = name;
            targets_.back().portalGroup.clear();
        }
        return targets_[found->second];
    }

    std::vector<NetworkTarget> Take() { return std::move(targets_); }

  private:
    std::vector<NetworkTarget> targets_;
    std::map<std::string, std::size_t> places_;
};

void TakeUnlessTold(std::string& text, const std::string& told) {
    if (text.empty()) {
        text = told;
    }
}

std::vector<tavrosim::NetworkLun> NetworkLunsFrom(const std::list<tavroapi::LunRecord>& records) {
    namespace iscsi_lun = tavroapi::iscsi_lun;
    std::vector<tavrosim::NetworkLun> luns;
    for (const tavroapi::LunRecord& record : records) {
        if (const auto number =
                tavrosim::WholeNumber<std::uint32_t>(record.texts[iscsi_lun::Number])) {
            luns.push_back({*number, record.texts[iscsi_lun::Vendor],
                            record.texts[iscsi_lun::Product], record.texts[iscsi_lun::Capacity],
                            record.texts[iscsi_lun::BlockSize],
                            record.texts[iscsi_lun::SerialNumber]});
        }
    }
    return luns;
}

void AnswersAt(NetworkTarget& target, const IscsiPortal& portal) {
    if (!portal.address.empty() &&
        std::ranges::find(target.portals, portal) == target.portals.end()) {
        target.portals.push_back(portal);
    }
}

void TellTarget(const tavroapi::TargetRecord& record, NetworkTarget& target) {
    TakeUnlessTold(target.alias, record.alias);
    TakeUnlessTold(target.portalGroup, record.portalGroup);
    AnswersAt(target, {record.portalAddress, record.portalPort});
}

void TellReach(const Told& told, const std::string& key, const tavrosim::IscsiStorage& storage,
               NetworkTargets& network) {
    std::set<std::string> names;
    for (const tavrosim::KnownTarget& known : storage.targets) {
        names.insert(known.name);
    }
    for (const auto& record :
         told.By<OperationCode::ListTargets>(key).value_or(std::list<tavroapi::TargetRecord>{})) {
        if (names.contains(record.name)) {
            TellTarget(record, network.Named(record.name));
        }
    }
    for (const tavrosim::KnownTarget& known : storage.targets) {
        NetworkTarget& target = network.Named(known.name);
        AnswersAt(target, known.portal);
        if (const auto record = told.By<OperationCode::ReadTarget>(key, known.name)) {
            TellTarget(*record, target);
        }
        const auto luns = told.By<OperationCode::ListLuns>(key, known.name);
        if (luns && target.luns.empty()) {
            target.luns = NetworkLunsFrom(*luns);
        }
    }
    for (const tavrosim::IscsiSession& session : storage.sessions) {
        AnswersAt(network.Named(session.target), session.portal);
    }
}

}  // namespace

std::vector<NetworkTarget> NetworkTargetsFrom(const Told& told, const tavrosim::Host& host) {
    NetworkTargets network;
    for (const tavrosim::Adapter& adapter : host.adapters) {
        for (const tavrosim::Port& port : adapter.ports) {
            for (const tavrosim::Function& function : port.functions) {
                if (function.iscsi) {
                    TellReach(told, function.mac, function.iscsi->storage, network);
                }
            }
        }
    }
    return network.Take();
}

}  // namespace tavrohost
