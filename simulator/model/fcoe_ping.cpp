// Reaching the fabric: the FIP VLAN ID of an FCoE function, and the ping of a target.
#include <charconv>
#include <optional>

#include "simulator/model/families.h"
#include "simulator/model/fcoe_fabric.h"
#include "tavroapi/fcoe_records.h"

namespace tavrosim {
namespace {

using tavroapi::FcoePingRequest;
using tavroapi::FcoePingResult;
using tavroapi::FipConfig;
using tavroapi::OperationCode;

constexpr std::uint32_t SomeRepliesMissing = 0x8000;

constexpr std::uint32_t DefaultCount = 5;
constexpr std::uint32_t HighestCount = 1000;
constexpr std::uint32_t DefaultTimeout = 2;
constexpr std::uint32_t HighestTimeout = 60;
constexpr std::uint32_t HighestVlanId = 4094;

// What stands for an option without its value.
constexpr std::string_view NoValue = "\x03";

std::optional<std::uint32_t> NumberIn(std::string_view text, std::uint32_t lowest,
                                      std::uint32_t highest) {
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    const bool isNumber = result.ec == std::errc() && result.ptr == end;
    return isNumber && number >= lowest && number <= highest ? std::optional(number) : std::nullopt;
}

std::optional<std::uint32_t> OptionValue(std::string_view text, std::uint32_t fallback,
                                         std::uint32_t highest) {
    return text.empty() || text == NoValue ? fallback : NumberIn(text, 1, highest);
}

Outcome RefusedOption(const wchar_t* what, const std::string& text, std::uint32_t highest) {
    return RefusedFcoe(FcoeStatus::InvalidPingOption,
                       std::wstring(L"The ") + what + L" " + QuotedText(text) + L" is not usable.",
                       L"Use a number from 1 to " + std::to_wstring(highest) + L".");
}

Outcome NoReply(const std::string& target) {
    return RefusedFcoe(FcoeStatus::NoReply,
                       L"The target " + QuotedText(target) + L" does not reply.",
                       L"Check the target and its connection to the fabric.");
}

// Rounded up: where some are lost at all, at least one is.
std::uint32_t LostReplies(std::uint32_t count, std::uint32_t lossPercent) {
    constexpr std::uint32_t Everything = 100;
    return (count * lossPercent + Everything - 1) / Everything;
}

Outcome Ping(const Host& host, const std::string& request, const FcoePingRequest& ping,
             FcoePingResult& result) {
    const FcoeRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    const auto count = OptionValue(ping.count, DefaultCount, HighestCount);
    if (!count) {
        return RefusedOption(L"count", ping.count, HighestCount);
    }
    const auto timeout = OptionValue(ping.timeout, DefaultTimeout, HighestTimeout);
    if (!timeout) {
        return RefusedOption(L"timeout", ping.timeout, HighestTimeout);
    }
    const FabricTarget* target = FindSeenTarget(host.fcoeFabric, function.Part(), ping.target);
    if (target == nullptr) {
        return UnknownFcoeTarget(ping.target);
    }
    constexpr std::uint32_t MillisecondsPerSecond = 1000;
    const std::uint32_t lost = LostReplies(*count, target->lossPercent);
    if (lost == *count || target->delayMilliseconds > *timeout * MillisecondsPerSecond) {
        return NoReply(ping.target);
    }
    const std::uint32_t delay = target->delayMilliseconds;
    result.libraryText1 = std::to_string(*count);
    result.time2 = std::to_string(delay + 1);
    result.time3 = std::to_string(delay);
    result.time4 = std::to_string(delay + 2);
    result.libraryText5 = std::to_string(*count - lost);
    result.libraryText6 = std::to_string(lost);
    return lost == 0 ? Done() : Outcome{SomeRepliesMissing, {}};
}

Outcome ReadFip(const Host& host, const std::string& request, FipConfig& config) {
    const FcoeRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    config = {};
    config.vlanId = function.Part().fipVlanId;
    return Done();
}

Outcome WriteFip(Host& host, const std::string& request, const FipConfig& config) {
    const FcoeRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    const auto vlanId = NumberIn(config.vlanId, 0, HighestVlanId);
    if (!vlanId) {
        return RefusedFcoe(FcoeStatus::InvalidVlanId,
                           L"The FIP VLAN ID " + QuotedText(config.vlanId) + L" is no VLAN ID.",
                           L"Use a number from 0 to " + std::to_wstring(HighestVlanId) + L".");
    }
    function.Part().fipVlanId = std::to_string(*vlanId);
    return Done();
}

constexpr OperationModel Rows[] = {
    Reads<OperationCode::PingFromFcoePort, Ping>(),
    Reads<OperationCode::ReadFip, ReadFip>(),
    Changes<OperationCode::WriteFip, WriteFip>(),
};

}  // namespace

std::span<const OperationModel> FcoePingOperations() {
    return Rows;
}

}  // namespace tavrosim
