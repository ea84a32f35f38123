// What an FCoE function tells of itself: information and statistics.
#include "simulator/host/told_hardware.h"
#include "simulator/model/families.h"
#include "simulator/model/fcoe_fabric.h"
#include "tavroapi/fcoe_records.h"

namespace tavrosim {
namespace {

using tavroapi::FcoePortRecord;
using tavroapi::FcoeStatisticsRecord;
using tavroapi::OperationCode;
namespace fcoe_port = tavroapi::fcoe_port;

constexpr const char* PortType = "VN_Port";
constexpr const char* MaximumFrameSize = "2112";
constexpr const char* SupportedTypes =
    "00000120000000010000000000000000"
    "00000000000000000000000000000000";

Outcome ReadFcoePort(const Viewed<FcoePart>& at, FcoePortRecord& record) {
    const FcoePart& part = at.part;
    const ToldHardware hardware = HardwareOf(at.adapter, at.port, at.function);
    const FcoeFabric& fabric = at.host.fcoeFabric;
    record.texts[fcoe_port::Title] = part.portWwn;
    record.texts[fcoe_port::NodeWwn] = part.nodeWwn;
    record.texts[fcoe_port::PortWwn] = part.portWwn;
    record.texts[fcoe_port::FabricName] = fabric.name;
    record.texts[fcoe_port::ModelName] = at.adapter.name;
    record.texts[fcoe_port::SerialNumber] = hardware.serialNumber;
    record.texts[fcoe_port::DriverVersion] = hardware.driverVersion;
    record.texts[fcoe_port::Driver] = hardware.driver;
    record.texts[fcoe_port::HardwareVersion] = hardware.hardwareRevision;
    record.texts[fcoe_port::OptionRomVersion] = hardware.optionRomVersion;
    record.texts[fcoe_port::FirmwareVersion] = hardware.firmwareVersion;
    record.texts[fcoe_port::LinkState] = hardware.linkStatus;
    record.texts[fcoe_port::PortType] = PortType;
    record.texts[fcoe_port::Fcid] = part.fcid;
    record.texts[fcoe_port::LinkSpeed] = hardware.linkSpeed;
    record.texts[fcoe_port::SupportedClasses] = ClassOfService;
    record.texts[fcoe_port::SupportedTypes] = SupportedTypes;
    record.texts[fcoe_port::DiscoveredPorts] =
        std::to_string(TargetsSeenBy(fabric, part.portWwn, part.bindings).size());
    record.texts[fcoe_port::MaximumFrameSize] = MaximumFrameSize;
    record.texts[fcoe_port::SupportedSpeeds] = hardware.maximumSpeed;
    record.texts[fcoe_port::DeviceName] = hardware.deviceName;
    record.texts[fcoe_port::HostName] = at.host.name;
    record.texts[fcoe_port::FpmaMac] = FabricMac(fabric, part.fcid);
    record.texts[fcoe_port::FcfMac] = fabric.fcfMac;
    record.texts[fcoe_port::FcfNodeWwn] = fabric.fcfNodeWwn;
    record.texts[fcoe_port::FcfPortWwn] = fabric.fcfPortWwn;
    record.texts[fcoe_port::FcMap] = fabric.fcMap;
    record.texts[fcoe_port::FabricVlan] = part.fipVlanId;
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

Outcome ReadFcoeStatistics(const Edited<FcoePart>& at, std::uint32_t,
                           FcoeStatisticsRecord& record) {
    FcoePart& part = at.part;
    LetTrafficHappen(part.statistics,
                     TargetsSeenBy(at.host.fcoeFabric, part.portWwn, part.bindings).size());
    Tell(part.statistics, record);
    return Done();
}

Outcome TellFcoeStatistics(const Viewed<FcoePart>& at, std::uint32_t,
                           FcoeStatisticsRecord& record) {
    Tell(at.part.statistics, record);
    return Done();
}

Outcome ResetFcoeStatistics(const Edited<FcoePart>& at, std::uint32_t,
                            FcoeStatisticsRecord& record) {
    FcoePart& part = at.part;
    part.statistics = {};
    Tell(part.statistics, record);
    return Done();
}

}  // namespace

std::span<const OperationModel> FcoePortOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::ReadFcoePort, FcoePart, ReadFcoePort>(),
        Counts<OperationCode::ReadFcoeStatistics, FcoePart, ReadFcoeStatistics,
               TellFcoeStatistics>(),
        Changes<OperationCode::ResetFcoeStatistics, FcoePart, ResetFcoeStatistics>(),
    };
    return Rows;
}

}  // namespace tavrosim
