// How iSCSI and FCoE functions boot.
#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "library/text/text.h"
#include "simulator/host/lookup.h"
#include "simulator/host/told_hardware.h"
#include "simulator/model/families.h"
#include "simulator/model/from_records.h"
#include "simulator/model/model.h"
#include "tavroapi/boot_records.h"

namespace tavrosim {
namespace {

using tavroapi::FcoeBootConfig;
using tavroapi::IscsiBootConfig;
using tavroapi::OperationCode;
namespace iscsi_boot = tavroapi::iscsi_boot;

constexpr std::uint32_t HighestBusyRetries = 255;
constexpr std::uint32_t HighestLinkUpDelay = 60;
constexpr std::uint32_t HighestLoginRetries = 8;

template <class Struct>
struct ConfigText {
    std::size_t position;
    std::string Struct::*text;
};

constexpr ConfigText<IscsiBoot> PortTexts[] = {
    {iscsi_boot::TcpIpByDhcp, &IscsiBoot::tcpIpByDhcp},
    {iscsi_boot::ParametersByDhcp, &IscsiBoot::parametersByDhcp},
    {iscsi_boot::LinkUpDelay, &IscsiBoot::linkUpDelay},
    {iscsi_boot::RetryCount, &IscsiBoot::retryCount},
    {iscsi_boot::IpAddress, &IscsiBoot::address},
    {iscsi_boot::SubnetMask, &IscsiBoot::subnetMask},
    {iscsi_boot::Gateway, &IscsiBoot::gateway},
    {iscsi_boot::InitiatorName, &IscsiBoot::initiatorName},
    {iscsi_boot::ChapName, &IscsiBoot::chapName},
    {iscsi_boot::ChapSecret, &IscsiBoot::chapSecret},
    {iscsi_boot::AddressBinding, &IscsiBoot::addressBinding},
    {iscsi_boot::BoundAddress, &IscsiBoot::boundAddress},
    {iscsi_boot::TargetIsFirstDisk, &IscsiBoot::targetIsFirstDisk},
    {iscsi_boot::BootFromTarget, &IscsiBoot::bootFromTarget},
};

constexpr ConfigText<IscsiBootTarget> TargetTexts[] = {
    {iscsi_boot::TargetUsed, &IscsiBootTarget::used},
    {iscsi_boot::TargetAddress, &IscsiBootTarget::address},
    {iscsi_boot::TargetPort, &IscsiBootTarget::port},
    {iscsi_boot::TargetLun, &IscsiBootTarget::lun},
    {iscsi_boot::TargetName, &IscsiBootTarget::name},
    {iscsi_boot::TargetChapName, &IscsiBootTarget::chapName},
    {iscsi_boot::TargetChapSecret, &IscsiBootTarget::chapSecret},
};

// Secrets go into the host and never come out.
template <class Struct, std::size_t Count>
void CopyOut(const Struct& source, const ConfigText<Struct> (&table)[Count], std::size_t start,
             IscsiBootConfig& config) {
    for (const ConfigText<Struct>& row : table) {
        if (!tavroapi::IsSecretPosition<IscsiBootConfig>(start + row.position)) {
            config.texts[start + row.position] = source.*row.text;
        }
    }
}

template <class Struct, std::size_t Count>
void CopyIn(const IscsiBootConfig& config, const ConfigText<Struct> (&table)[Count],
            std::size_t start, Struct& target) {
    for (const ConfigText<Struct>& row : table) {
        target.*row.text = config.texts[start + row.position];
    }
}

bool IsOneOf(const std::string& text, std::initializer_list<std::string_view> words) {
    return std::find(words.begin(), words.end(), text) != words.end();
}

bool IsSwitch(const std::string& text) {
    return IsOneOf(text, {"Enabled", "Disabled"});
}

Outcome RefuseBootValue(const std::wstring& details) {
    return Refused(Status::InvalidBootValue,
                   L"The boot configuration has a value that is not valid.",
                   L"Correct the value and set the boot configuration again.", details);
}

Outcome CheckTarget(const IscsiBootConfig& config, std::size_t start, ErrorText message) {
    const bool isUsed = config.texts[start + iscsi_boot::TargetUsed] == "Enabled";
    const bool needsName = config.texts[iscsi_boot::ParametersByDhcp] == "Disabled";
    if (isUsed && needsName && config.texts[start + iscsi_boot::TargetName].empty()) {
        return Refused(Status::BootTargetWithoutName, message,
                       L"Enter the target's name, or take the iSCSI settings from DHCP.");
    }
    return Done();
}

Outcome CheckIscsiBoot(const IscsiBootConfig& config) {
    for (const std::size_t at :
         {iscsi_boot::TcpIpByDhcp, iscsi_boot::ParametersByDhcp,
          iscsi_boot::FirstTarget + iscsi_boot::TargetUsed,
          iscsi_boot::SecondTarget + iscsi_boot::TargetUsed, iscsi_boot::AddressBinding,
          iscsi_boot::TargetIsFirstDisk, iscsi_boot::BootFromTarget}) {
        if (!IsSwitch(config.texts[at])) {
            return RefuseBootValue(L"Text " + std::to_wstring(at) +
                                   L" is neither \"Enabled\" nor \"Disabled\".");
        }
    }
    const Outcome first =
        CheckTarget(config, iscsi_boot::FirstTarget, L"The first boot target has no name.");
    return first.IsDone() ? CheckTarget(config, iscsi_boot::SecondTarget,
                                        L"The second boot target has no name.")
                          : first;
}

Outcome ReadIscsiBoot(const Viewed<IscsiPart>& at, IscsiBootConfig& config) {
    const IscsiBoot boot = at.part.boot.value_or(IscsiBoot{});
    CopyOut(boot, PortTexts, 0, config);
    CopyOut(boot.firstTarget, TargetTexts, iscsi_boot::FirstTarget, config);
    CopyOut(boot.secondTarget, TargetTexts, iscsi_boot::SecondTarget, config);
    return Done();
}

Outcome WriteIscsiBoot(const Edited<IscsiPart>& at, const IscsiBootConfig& config) {
    Outcome checked = CheckIscsiBoot(config);
    if (!checked.IsDone()) {
        return checked;
    }
    at.part.boot = IscsiBootFrom(config);
    return Done();
}

Outcome ReadFcoeBoot(const Viewed<FcoePart>& at, FcoeBootConfig& config) {
    const FcoeBoot boot = at.part.boot.value_or(FcoeBoot{});
    config.bootState = boot.state;
    config.secondSwitch = boot.fabricDiscovery;
    config.bootCodeVersion = HardwareOf(at.adapter, at.port, at.function).bootCodeVersion;
    config.numberA = boot.busyRetries;
    config.numberB = boot.linkUpDelay;
    config.numberC = boot.loginRetries;
    for (std::size_t i = 0; i < config.targets.size(); ++i) {
        config.targets[i] = {boot.targets[i].target, boot.targets[i].lun, boot.targets[i].state};
    }
    return Done();
}

Outcome CheckFcoeBoot(const FcoeBootConfig& config) {
    if (!IsOneOf(config.bootState, {"Enabled", "Disabled", "One Time Disabled"}) ||
        !IsSwitch(config.secondSwitch)) {
        return RefuseBootValue(L"The boot state or the fabric discovery is no known word.");
    }
    if (config.numberA > HighestBusyRetries || config.numberB > HighestLinkUpDelay ||
        config.numberC > HighestLoginRetries) {
        return RefuseBootValue(
            L"A number is above 255 (busy retries), 60 (link-up delay) or 8 (login "
            L"retries).");
    }
    return Done();
}

// The version of the boot code cannot be set.
Outcome WriteFcoeBoot(const Edited<FcoePart>& at, const FcoeBootConfig& config) {
    Outcome checked = CheckFcoeBoot(config);
    if (!checked.IsDone()) {
        return checked;
    }
    at.part.boot = FcoeBootFrom(config);
    return Done();
}

}  // namespace

std::span<const OperationModel> BootOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::ReadIscsiBoot, IscsiPart, ReadIscsiBoot>(),
        Changes<OperationCode::WriteIscsiBoot, IscsiPart, WriteIscsiBoot>(),
        Reads<OperationCode::ReadFcoeBoot, FcoePart, ReadFcoeBoot>(),
        Changes<OperationCode::WriteFcoeBoot, FcoePart, WriteFcoeBoot>(),
    };
    return Rows;
}

IscsiBoot IscsiBootFrom(const IscsiBootConfig& config) {
    IscsiBoot boot;
    CopyIn(config, PortTexts, 0, boot);
    CopyIn(config, TargetTexts, iscsi_boot::FirstTarget, boot.firstTarget);
    CopyIn(config, TargetTexts, iscsi_boot::SecondTarget, boot.secondTarget);
    return boot;
}

FcoeBoot FcoeBootFrom(const FcoeBootConfig& config) {
    FcoeBoot boot;
    boot.state = config.bootState;
    boot.fabricDiscovery = config.secondSwitch;
    boot.busyRetries = config.numberA;
    boot.linkUpDelay = config.numberB;
    boot.loginRetries = config.numberC;
    for (std::size_t i = 0; i < config.targets.size(); ++i) {
        boot.targets[i] = {config.targets[i].target, config.targets[i].lunItem,
                           config.targets[i].state};
    }
    return boot;
}

}  // namespace tavrosim
