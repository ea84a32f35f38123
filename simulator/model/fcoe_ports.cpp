// What an FCoE function tells of itself: information and statistics.
#include "simulator/model/families.h"
#include "simulator/model/fcoe_fabric.h"
#include "tavroapi/fcoe_records.h"

namespace tavrosim {
namespace {

using tavroapi::FcoePortRecord;
using tavroapi::FcoeStatisticsRecord;
using tavroapi::OperationCode;

constexpr const char* PortType = "VN_Port";
constexpr const char* ClassOfService = "Class 3";
constexpr const char* MaximumFrameSize = "2112";
constexpr const char* SupportedTypes =
    "00000120000000010000000000000000"
    "00000000000000000000000000000000";

Outcome ReadPort(const Host& host, const std::string& request, FcoePortRecord& record) {
    const FcoeRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    const FcoePart& part = function.Part();
    const FcoeHardware& hardware = part.hardware;
    const FcoeFabric& fabric = host.fcoeFabric;
    record.texts = {
        part.portWwn,
        part.nodeWwn,
        part.portWwn,
        fabric.name,
        function.located.adapter->name,
        hardware.serialNumber,
        hardware.driverVersion,
        hardware.driver,
        hardware.hardwareVersion,
        hardware.optionRomVersion,
        hardware.firmwareVersion,
        hardware.linkState,
        PortType,
        part.fcid,
        hardware.linkSpeed,
        ClassOfService,
        SupportedTypes,
        std::to_string(TargetsSeenBy(fabric, part.portWwn, part.bindings).size()),
        MaximumFrameSize,
        hardware.linkSpeed,
        hardware.deviceName,
        host.name,
        FabricMac(fabric, part.fcid),
        fabric.fcfMac,
        fabric.fcfNodeWwn,
        fabric.fcfPortWwn,
        fabric.fcMap,
        part.fipVlanId,
    };
    return Done();
}

void Tell(const FcoeStatistics& statistics, FcoeStatisticsRecord& record) {
    std::size_t position = 0;
    std::apply(
        [&](const auto&... member) {
            ((record.texts.at(position++) = std::to_string(statistics.*member.member)), ...);
        },
        FcoeStatistics::Members());
}

// What has happened since the statistics were last read: the forwarder has advertised itself, and
// every target was asked for its state, read from and written to.
void LetTrafficHappen(FcoeStatistics& statistics, std::uint64_t targets) {
    constexpr std::uint64_t Seconds = 8;
    constexpr std::uint64_t ReadsPerTarget = 8;
    constexpr std::uint64_t WritesPerTarget = 4;
    constexpr std::uint64_t FramesPerMegabyte = 512;
    constexpr std::uint64_t WordsPerFrame = 528;
    const std::uint64_t reads = ReadsPerTarget * targets;
    const std::uint64_t writes = WritesPerTarget * targets;
    const std::uint64_t requests = targets + reads + writes;
    const std::uint64_t transmitted = requests + FramesPerMegabyte * writes;
    const std::uint64_t received = 1 + requests + FramesPerMegabyte * reads;
    statistics.secondsSinceReset += Seconds;
    statistics.fipAdvertisements += 1;
    statistics.controlRequests += targets;
    statistics.inputRequests += reads;
    statistics.outputRequests += writes;
    statistics.inputMegabytes += reads;
    statistics.outputMegabytes += writes;
    statistics.transmittedFrames += transmitted;
    statistics.transmittedWords += WordsPerFrame * transmitted;
    statistics.receivedFrames += received;
    statistics.receivedWords += WordsPerFrame * received;
}

Outcome ReadStatistics(Host& host, const std::string& request, std::uint32_t,
                       FcoeStatisticsRecord& record) {
    const FcoeRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    FcoePart& part = function.Part();
    LetTrafficHappen(part.statistics,
                     TargetsSeenBy(host.fcoeFabric, part.portWwn, part.bindings).size());
    Tell(part.statistics, record);
    return Done();
}

Outcome ResetStatistics(Host& host, const std::string& request, std::uint32_t,
                        FcoeStatisticsRecord& record) {
    const FcoeRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    FcoePart& part = function.Part();
    part.statistics = {};
    Tell(part.statistics, record);
    return Done();
}

constexpr OperationModel Rows[] = {
    Reads<OperationCode::ReadFcoePort, ReadPort>(),
    Changes<OperationCode::ReadFcoeStatistics, ReadStatistics>(),
    Changes<OperationCode::ResetFcoeStatistics, ResetStatistics>(),
};

}  // namespace

std::span<const OperationModel> FcoePortOperations() {
    return Rows;
}

}  // namespace tavrosim
