#pragma once

#include <string>

#include "library/text/identifier.h"
#include "tavroapi/dcb_records.h"
#include "tavroapi/fcoe_records.h"
#include "tavroapi/inventory_records.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavrosim {

// What an element of a list is known by: `name`, and where elements share it `detail` too.
struct ElementKey {
    std::string name;
    std::string detail;
};

// One text of two, which no other two have unless the first holds a zero byte.
inline std::string Joined(const std::string& first, const std::string& second) {
    return first + '\0' + second;
}

// The keys of the elements of the contract's lists.
struct ElementKeys {
    static ElementKey Of(const std::string& text) { return {text, {}}; }
    static ElementKey Of(const tavroapi::AdapterRecord& adapter) { return {adapter.name, {}}; }
    static ElementKey Of(const tavroapi::FunctionAddress& function) {
        return {tavrolib::NormalText(function.keyText), std::to_string(function.functionNumber)};
    }
    static ElementKey Of(const tavroapi::FunctionIdentity& function) {
        return {tavrolib::NormalText(function.keyText), std::to_string(function.functionType)};
    }
    static ElementKey Of(const tavroapi::PortalEntry& portal) {
        return {Joined(portal.address, portal.port), {}};
    }
    static ElementKey Of(const tavroapi::TargetRecord& target) {
        return {target.name, Joined(target.portalAddress, target.portalPort)};
    }
    static ElementKey Of(const tavroapi::LunRecord& lun) {
        return {lun.texts[tavroapi::iscsi_lun::Number], {}};
    }
    static ElementKey Of(const tavroapi::FcoeBindingRecord& binding) {
        return {tavrolib::NormalText(binding.texts[tavroapi::fcoe_binding::PortWwn]),
                binding.texts[tavroapi::fcoe_binding::Lun]};
    }
    static ElementKey Of(const tavroapi::VirtualPortRecord& port) {
        return {tavrolib::NormalText(port.portWwn), {}};
    }
    static ElementKey Of(const tavroapi::VirtualPortTargetRecord& target) {
        return {tavrolib::NormalText(target.portName), {}};
    }
    static ElementKey Of(const tavroapi::VirtualPortLunRecord& lun) {
        return {Joined(tavrolib::NormalText(lun.targetPortWwn), lun.scsiUnit), {}};
    }
    static ElementKey Of(const tavroapi::DcbPriority& priority) {
        return {priority.texts[tavroapi::dcb_priority::Number], {}};
    }
};

// The same for an operation's result. Targets and logical units of FCoE have one type, so that only
// the operation tells them apart.
template <tavroapi::OperationCode Code>
struct ElementKeysOf : ElementKeys {};

template <>
struct ElementKeysOf<tavroapi::OperationCode::ListFcoeTargets> : ElementKeys {
    using ElementKeys::Of;
    static ElementKey Of(const tavroapi::FcoeTargetRecord& target) {
        return {tavrolib::NormalText(target.texts[tavroapi::fcoe_target::PortWwn]), {}};
    }
};

template <>
struct ElementKeysOf<tavroapi::OperationCode::ListFcoeLuns> : ElementKeys {
    using ElementKeys::Of;
    static ElementKey Of(const tavroapi::FcoeLunRecord& lun) {
        return {lun.texts[tavroapi::fcoe_lun::Item], {}};
    }
};

}  // namespace tavrosim
