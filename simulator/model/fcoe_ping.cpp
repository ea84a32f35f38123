// Reaching the fabric: the FIP VLAN ID of an FCoE function, and the ping of a target.
#include <charconv>
#include <optional>

#include "simulator/model/families.h"
#include "simulator/model/fcoe_fabric.h"
#include "tavroapi/codes.h"
#include "tavroapi/fcoe_records.h"

namespace tavrosim {
namespace {

using tavroapi::FcoePingRequest;
using tavroapi::FcoePingResult;
using tavroapi::FipConfig;
using tavroapi::OperationCode;

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

// The details of a number that was refused.
std::wstring OutsideRange(const wchar_t* what, const std::string& text, std::uint32_t lowest,
                          std::uint32_t highest) {
    return std::wstring(what) + L" " + Quoted(text) + L", range " + std::to_wstring(lowest) +
           L" to " + std::to_wstring(highest);
}

Outcome RefusedOption(const wchar_t* what, const std::string& text, std::uint32_t highest) {
    return Refused(Status::InvalidPingOption, L"The value of a ping option is not usable.",
                   L"Use a whole number within the range.", OutsideRange(what, text, 1, highest));
}

Outcome NoReply(const std::string& target) {
    return Refused(Status::NoReply, L"The target does not reply.",
                   L"Check the target and its connection to the fabric.",
                   L"target " + Quoted(target));
}

// Rounded up: where some are lost at all, at least one is.
std::uint32_t LostReplies(std::uint32_t count, std::uint32_t lossPercent) {
    constexpr std::uint32_t Everything = 100;
    return (count * lossPercent + Everything - 1) / Everything;
}

Outcome Ping(const Viewed<FcoePart>& at, const FcoePingRequest& ping, FcoePingResult& result) {
    const auto count = OptionValue(ping.count, DefaultCount, HighestCount);
    if (!count) {
        return RefusedOption(L"count", ping.count, HighestCount);
    }
    const auto timeout = OptionValue(ping.timeout, DefaultTimeout, HighestTimeout);
    if (!timeout) {
        return RefusedOption(L"timeout", ping.timeout, HighestTimeout);
    }
    const FabricTarget* target = FindSeenTarget(at.host.fcoeFabric, at.part, ping.target);
    if (target == nullptr) {
        return UnknownFcoeTarget(ping.target);
    }
    constexpr std::uint32_t MillisecondsPerSecond = 1000;
    const std::uint32_t lost = LostReplies(*count, target->lossPercent);
    if (lost == *count || target->delayMilliseconds > *timeout * MillisecondsPerSecond) {
        return NoReply(ping.target);
    }
    const std::uint32_t delay = target->delayMilliseconds;
    result.sent = std::to_string(*count);
    result.averageTime = std::to_string(delay + 1);
    result.shortestTime = std::to_string(delay);
    result.longestTime = std::to_string(delay + 2);
    result.received = std::to_string(*count - lost);
    result.lost = std::to_string(lost);
    return lost == 0 ? Done() : Outcome{tavroapi::FcoePingRepliesMissing, {}};
}

Outcome ReadFip(const Viewed<FcoePart>& at, FipConfig& config) {
    config = {};
    config.vlanId = at.part.fipVlanId;
    return Done();
}

Outcome WriteFip(const Edited<FcoePart>& at, const FipConfig& config) {
    const auto vlanId = NumberIn(config.vlanId, 0, HighestVlanId);
    if (!vlanId) {
        return Refused(Status::InvalidVlanId, L"The FIP VLAN ID is not valid.",
                       L"Use a whole number within the range.",
                       OutsideRange(L"FIP VLAN ID", config.vlanId, 0, HighestVlanId));
    }
    at.part.fipVlanId = std::to_string(*vlanId);
    return Done();
}

}  // namespace

std::span<const OperationModel> FcoePingOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::PingFromFcoePort, FcoePart, Ping>(),
        Reads<OperationCode::ReadFip, FcoePart, ReadFip>(),
        Changes<OperationCode::WriteFip, FcoePart, WriteFip>(),
    };
    return Rows;
}

}  // namespace tavrosim
