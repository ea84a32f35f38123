// The adapter settings of Ethernet functions: telling what they are and can be, and changing them.
#include "simulator/host/ethernet_settings.h"

#include <charconv>
#include <optional>
#include <span>
#include <string>
#include <system_error>

#include "library/calls/call.h"
#include "library/calls/setting_values.h"
#include "simulator/answers/answer.h"
#include "simulator/answers/captured_answers.h"
#include "simulator/host/lookup.h"
#include "simulator/model/families.h"
#include "simulator/model/from_records.h"
#include "simulator/model/model.h"
#include "simulator/model/system_interface.h"
#include "tavroapi/ethernet_records.h"

namespace tavrosim {
namespace {

using tavroapi::AdapterSetting;
using tavroapi::OperationCode;
using tavrolib::AutoNegotiation;
using tavrolib::Call;
using tavrolib::Directions;
using tavrolib::OffAndOn;
using tavrolib::SettingRange;

// What a setting can be set to. Exactly one of the first three is there, none for a setting that
// cannot be changed.
struct SettingRule {
    std::span<const wchar_t* const> choices;
    SettingRange range;
    bool isAddress = false;
};

constexpr const wchar_t* FlowControlValues[] = {L"Disabled", L"Rx Enabled", L"Tx Enabled",
                                                L"Rx & Tx Enabled", AutoNegotiation};
constexpr const wchar_t* Speeds[] = {AutoNegotiation, L"1 Gbps", L"10 Gbps"};
constexpr const wchar_t* PriorityAndVlan[] = {L"Disabled", L"Priority Enabled", L"VLAN Enabled",
                                              L"Priority & VLAN Enabled"};
constexpr const wchar_t* JumboPackets[] = {L"1514", L"4088", L"9014"};
constexpr const wchar_t* QueueCounts[] = {L"1", L"2", L"4", L"8"};

constexpr SettingRule OneOf(std::span<const wchar_t* const> choices) {
    return {choices, {}, false};
}

constexpr SettingRule Within(std::int32_t minimum, std::int32_t step, std::int32_t maximum) {
    return {{}, {minimum, step, maximum}, false};
}

constexpr SettingRule Address{{}, {}, true};
constexpr SettingRule Fixed{};

struct SettingRow {
    std::size_t number = 0;
    std::string EthernetSettings::*value = nullptr;
    SettingRule rule;
};

constexpr SettingRow SettingRows[] = {
    {1, &EthernetSettings::speed, OneOf(Speeds)},
    {8, &EthernetSettings::flowControl, OneOf(FlowControlValues)},
    {15, &EthernetSettings::priorityAndVlan, OneOf(PriorityAndVlan)},
    {14, &EthernetSettings::interruptModeration, OneOf(OffAndOn)},
    {4, &EthernetSettings::checksumOffloadIPv4, OneOf(Directions)},
    {5, &EthernetSettings::checksumOffloadIPv6, OneOf(Directions)},
    {0, &EthernetSettings::locallyAdministeredAddress, Address},
    {16, &EthernetSettings::receiveSideScaling, OneOf(OffAndOn)},
    {9, &EthernetSettings::jumboPacket, OneOf(JumboPackets)},
    {17, &EthernetSettings::receiveSideScalingQueues, OneOf(QueueCounts)},
    {10, &EthernetSettings::receiveBuffers, Within(64, 8, 4096)},
    {25, &EthernetSettings::transmitBuffers, Within(128, 16, 8192)},
    {12, &EthernetSettings::largeSendOffloadIPv4, OneOf(OffAndOn)},
    {23, &EthernetSettings::largeSendOffloadIPv6, OneOf(OffAndOn)},
    {24, &EthernetSettings::receiveSegmentCoalescing, OneOf(OffAndOn)},
    {19, &EthernetSettings::singleRootVirtualization, OneOf(OffAndOn)},
    {13, &EthernetSettings::wakeOnMagicPacket, OneOf(OffAndOn)},
    {18, &EthernetSettings::virtualFunctions, Fixed},
    {2, &EthernetSettings::interruptMode, Fixed},
    {3, &EthernetSettings::interruptVectors, Fixed},
    {6, &EthernetSettings::busType, Fixed},
    {7, &EthernetSettings::busWidth, Fixed},
    {11, &EthernetSettings::busSpeed, Fixed},
    {26, &EthernetSettings::receiveQueues, Fixed},
    {27, &EthernetSettings::transmitQueues, Fixed},
    {20, &EthernetSettings::multicastFilters, Fixed},
    {21, &EthernetSettings::energyEfficientEthernet, Fixed},
    {22, &EthernetSettings::timeStamping, Fixed},
    {28, &EthernetSettings::networkBoot, Fixed},
    {29, &EthernetSettings::connector, Fixed},
    {30, &EthernetSettings::temperature, Fixed},
};

AdapterSetting Describe(const std::string& value, const SettingRule& rule) {
    AdapterSetting setting;
    setting.value = value;
    setting.choices =
        rule.range.step != 0 ? tavrolib::ChoicesOf(rule.range) : tavrolib::ListOf(rule.choices);
    return setting;
}

Outcome ReadSettings(const Viewed<EthernetPart>& at, tavroapi::AdapterSettings& record) {
    const EthernetSettings settings = at.part.settings.value_or(EthernetSettings{});
    for (const SettingRow& row : SettingRows) {
        record.settings.at(row.number) = Describe(settings.*row.value, row.rule);
    }
    return Done();
}

// The settings as they were captured; none where they were not, or their reading was refused.
std::optional<tavroapi::AdapterSettings> CapturedSettings(const Host& host,
                                                          const Function& function) {
    if (!IsCaptured(host)) {
        return std::nullopt;
    }
    constexpr auto Code = static_cast<std::uint32_t>(OperationCode::ReadAdapterSettings);
    Call reading;
    reading.entryPoint = tavrolib::EntryPoint::DoOperation;
    reading.operation = Code;
    reading.described = tavrolib::FindOperation(Code);
    reading.request = function.mac;
    const Answer* const answer = host.captured->Find(reading);
    if (answer == nullptr || answer->status != 0) {
        return std::nullopt;
    }
    tavroapi::AdapterSettings settings;
    answer->FillOutput(reading.OutputType(), &settings);
    return settings;
}

// Takes over the settings that are marked as changed, all of them or none.
// The iSCSI function of a system's interface tells the largest frame of that, without its header.
void TellFrames(const Edited<EthernetPart>& at, const std::string& jumboPacket) {
    constexpr int Header = 14;
    int frame = 0;
    const char* const end = jumboPacket.data() + jumboPacket.size();
    const auto [stop, error] = std::from_chars(jumboPacket.data(), end, frame);
    if (error != std::errc() || stop != end) {
        return;
    }
    for (Function& other : at.port.functions) {
        if (other.iscsi && IsSameInterface(other, at.function) &&
            !other.iscsi->tcpIp.maxFrameSize.empty()) {
            other.iscsi->tcpIp.maxFrameSize = std::to_string(frame - Header);
        }
    }
}

Outcome WriteSettings(const Edited<EthernetPart>& at, const tavroapi::AdapterSettings& record) {
    EthernetPart& part = at.part;
    EthernetSettings settings = part.settings.value_or(EthernetSettings{});
    const auto captured = CapturedSettings(at.host, at.function);
    for (const SettingRow& row : SettingRows) {
        const AdapterSetting& setting = record.settings.at(row.number);
        if (setting.changed == "1") {
            std::string& value = settings.*row.value;
            const AdapterSetting known =
                captured ? captured->settings.at(row.number) : Describe(value, row.rule);
            if (Outcome outcome = tavrolib::CheckSettingValue(
                    {row.number, value, known.choices, row.rule.isAddress}, setting.value);
                !outcome.IsDone()) {
                return outcome;
            }
            const bool isOwnAddress =
                row.rule.isAddress && known.choices.empty() && setting.value == "0";
            value = isOwnAddress ? tavrolib::NoAssignedAddress : setting.value;
        }
    }
    part.settings = settings;
    TellFrames(at, settings.jumboPacket);
    return Done();
}

}  // namespace

std::span<const OperationModel> AdapterSettingsOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::ReadAdapterSettings, EthernetPart, ReadSettings>(),
        Changes<OperationCode::WriteAdapterSettings, EthernetPart, WriteSettings>(),
        Reads<OperationCode::ExportAdapterSettings, EthernetPart, ReadSettings>()};
    return Rows;
}

EthernetSettings EthernetSettingsFrom(const tavroapi::AdapterSettings& record) {
    EthernetSettings settings;
    for (const SettingRow& row : SettingRows) {
        settings.*row.value = record.settings.at(row.number).value;
    }
    return settings;
}

}  // namespace tavrosim
