// What an FCoE function tells of itself: information and statistics.
#include "simulator/model/families.h"
#include "simulator/model/fcoe_fabric.h"
#include "tavroapi/fcoe_records.h"

namespace tavrosim {
namespace {

using tavroapi::FcoePortRecord;
using tavroapi::FcoeStatisticsRecord;
using tavroapi::OperationCode;
namespace position = tavroapi::fcoe_port;

constexpr const char* PortType = "VN_Port";
constexpr const char* ClassOfService = "Class 3";
constexpr const char* MaximumFrameSize = "2112";
constexpr const char* SupportedTypes =
    "00000120000000010000000000000000"
    "00000000000000000000000000000000";

Outcome ReadPort(const Viewed<FcoePart>& at, FcoePortRecord& record) {
    const FcoePart& part = at.part;
    const FcoeHardware& hardware = part.hardware;
    const FcoeFabric& fabric = at.host.fcoeFabric;
    record.texts[position::Title] = part.portWwn;
    record.texts[position::NodeWwn] = part.nodeWwn;
    record.texts[position::PortWwn] = part.portWwn;
    record.texts[position::FabricName] = fabric.name;
    record.texts[position::ModelName] = at.adapter.name;
    record.texts[position::SerialNumber] = hardware.serialNumber;
    record.texts[position::DriverVersion] = hardware.driverVersion;
    record.texts[position::Driver] = hardware.driver;
    record.texts[position::HardwareVersion] = hardware.hardwareVersion;
    record.texts[position::OptionRomVersion] = hardware.optionRomVersion;
    record.texts[position::FirmwareVersion] = hardware.firmwareVersion;
    record.texts[position::LinkState] = hardware.linkState;
    record.texts[position::PortType] = PortType;
    record.texts[position::Fcid] = part.fcid;
    record.texts[position::LinkSpeed] = hardware.linkSpeed;
    record.texts[position::SupportedClasses] = ClassOfService;
    record.texts[position::SupportedTypes] = SupportedTypes;
    record.texts[position::DiscoveredPorts] =
        std::to_string(TargetsSeenBy(fabric, part.portWwn, part.bindings).size());
    record.texts[position::MaximumFrameSize] = MaximumFrameSize;
    record.texts[position::SupportedSpeeds] = hardware.linkSpeed;
    record.texts[position::DeviceName] = hardware.deviceName;
    record.texts[position::HostName] = at.host.name;
    record.texts[position::FpmaMac] = FabricMac(fabric, part.fcid);
    record.texts[position::FcfMac] = fabric.fcfMac;
    record.texts[position::FcfNodeWwn] = fabric.fcfNodeWwn;
    record.texts[position::FcfPortWwn] = fabric.fcfPortWwn;
    record.texts[position::FcMap] = fabric.fcMap;
    record.texts[position::FabricVlan] = part.fipVlanId;
    return Done();
}

void Tell(const FcoeStatistics& statistics, FcoeStatisticsRecord& record) {
    std::size_t position = 0;
    FcoeStatistics::Members([&](const auto&... member) {
        ((record.texts.at(position++) = std::to_string(statistics.*member.member)), ...);
    });
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

Outcome ReadStatistics(const Edited<FcoePart>& at, std::uint32_t, FcoeStatisticsRecord& record) {
    FcoePart& part = at.part;
    LetTrafficHappen(part.statistics,
                     TargetsSeenBy(at.host.fcoeFabric, part.portWwn, part.bindings).size());
    Tell(part.statistics, record);
    return Done();
}

Outcome ResetStatistics(const Edited<FcoePart>& at, std::uint32_t, FcoeStatisticsRecord& record) {
    FcoePart& part = at.part;
    part.statistics = {};
    Tell(part.statistics, record);
    return Done();
}

constexpr OperationModel Rows[] = {
    Reads<OperationCode::ReadFcoePort, FcoePart, ReadPort>(),
    Changes<OperationCode::ReadFcoeStatistics, FcoePart, ReadStatistics>(),
    Changes<OperationCode::ResetFcoeStatistics, FcoePart, ResetStatistics>(),
};

}  // namespace

std::span<const OperationModel> FcoePortOperations() {
    return Rows;
}

}  // namespace tavrosim
