// What an iSCSI function tells of itself: information, default parameters, statistics.
#include "library/records/port_tcpip.h"
#include "simulator/host/told_hardware.h"
#include "simulator/model/families.h"
#include "simulator/model/iscsi_parameters.h"
#include "simulator/model/iscsi_storage.h"
#include "simulator/model/tcpip_records.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavrosim {
namespace {

using tavroapi::IscsiParameterRecord;
using tavroapi::IscsiPortRecord;
using tavroapi::OperationCode;
namespace iscsi_port = tavroapi::iscsi_port;
namespace iscsi_defaults = tavroapi::iscsi_defaults;

constexpr std::string_view DriverWithoutStatistics = "bnx2i";

Outcome ReadIscsiPort(const Viewed<IscsiPart>& at, IscsiPortRecord& record) {
    const ToldHardware hardware = HardwareOf(at.adapter, at.port, at.function);
    record.texts[iscsi_port::FunctionNumber] = std::to_string(at.function.number);
    record.texts[iscsi_port::Driver] = hardware.driver;
    record.texts[iscsi_port::DriverVersion] = hardware.driverVersion;
    record.texts[iscsi_port::Mac] = at.function.mac;
    record.texts[iscsi_port::ModelName] = at.adapter.name;
    record.texts[iscsi_port::SerialNumber] = hardware.serialNumber;
    record.texts[iscsi_port::LinkStatus] = hardware.linkStatus;
    record.texts[iscsi_port::LinkSpeed] = hardware.linkSpeed;
    tavrolib::TellTcpIp(RecordOf(at.part.tcpIp), record);
    record.texts[iscsi_port::ActiveSessions] = std::to_string(at.part.storage.sessions.size());
    record.texts[iscsi_port::FirmwareVersion] = hardware.firmwareVersion;
    return Done();
}

Outcome ReadDefaults(const Viewed<IscsiPart>&, IscsiParameterRecord& record) {
    const IscsiParameters& parameters = DefaultParameters;
    record.texts[iscsi_defaults::MaxConnections] = parameters.maxConnections;
    record.texts[iscsi_defaults::InitialR2T] = parameters.initialR2T;
    record.texts[iscsi_defaults::ImmediateData] = parameters.immediateData;
    record.texts[iscsi_defaults::MaxBurstLength] = parameters.maxBurstLength;
    record.texts[iscsi_defaults::FirstBurstLength] = parameters.firstBurstLength;
    record.texts[iscsi_defaults::TimeToWait] = parameters.timeToWait;
    record.texts[iscsi_defaults::TimeToRetain] = parameters.timeToRetain;
    record.texts[iscsi_defaults::MaxOutstandingR2T] = parameters.maxOutstandingR2T;
    record.texts[iscsi_defaults::DataPduInOrder] = parameters.dataPduInOrder;
    record.texts[iscsi_defaults::DataSequenceInOrder] = parameters.dataSequenceInOrder;
    record.texts[iscsi_defaults::ErrorRecoveryLevel] = parameters.errorRecoveryLevel;
    record.texts[iscsi_defaults::MaxReceiveLength] = parameters.maxReceiveLength;
    record.texts[iscsi_defaults::HeaderDigest] = parameters.headerDigest;
    record.texts[iscsi_defaults::DataDigest] = parameters.dataDigest;
    return Done();
}

// What has happened since the statistics were last read: the discovery of targets was repeated,
// and every session has kept alive and read and written a little.
void LetTrafficHappen(IscsiStatistics& statistics, std::uint64_t sessions) {
    constexpr std::uint64_t HeaderLength = 48;
    constexpr std::uint64_t CommandsPerSession = 16;
    constexpr std::uint64_t WritesPerSession = 4;
    constexpr std::uint64_t BytesPerCommand = 4096;
    const std::uint64_t commands = CommandsPerSession * sessions;
    const std::uint64_t writes = WritesPerSession * sessions;
    const std::uint64_t sent = 1 + sessions + commands + writes;
    const std::uint64_t received = 1 + sessions + commands + writes;
    statistics.pdusSent += sent;
    statistics.pdusReceived += received;
    statistics.bytesSent += HeaderLength * sent + BytesPerCommand * writes;
    statistics.bytesReceived += HeaderLength * received + BytesPerCommand * (commands - writes);
    statistics.scsiCommands += commands;
    statistics.scsiResponses += commands;
    statistics.readyToTransfer += writes;
    statistics.nopsSent += sessions;
    statistics.nopsReceived += sessions;
}

Outcome TellIscsiStatistics(const Viewed<IscsiPart>& at, IscsiParameterRecord& record) {
    const std::string driver = HardwareOf(at.adapter, at.port, at.function).driver;
    if (driver == DriverWithoutStatistics) {
        return Refused(Status::NoStatistics, L"The driver has no statistics.",
                       L"Use a port with another driver.", L"driver " + Quoted(driver));
    }
    const IscsiStatistics& statistics = at.part.storage.statistics;
    std::size_t position = 0;
    IscsiStatistics::Members([&](const auto&... member) {
        ((record.texts.at(position++) = std::to_string(statistics.*member.member)), ...);
    });
    return Done();
}

// A refused reading is dropped with the traffic.
Outcome ReadIscsiStatistics(const Edited<IscsiPart>& at, IscsiParameterRecord& record) {
    LetTrafficHappen(at.part.storage.statistics, at.part.storage.sessions.size());
    return TellIscsiStatistics({at.host, at.adapter, at.port, at.function, at.part}, record);
}

}  // namespace

std::span<const OperationModel> IscsiPortInfoOperations() {
    static constexpr OperationModel Rows[] = {
        Reads<OperationCode::ReadIscsiPort, IscsiPart, ReadIscsiPort>(),
        Reads<OperationCode::ReadIscsiDefaults, IscsiPart, ReadDefaults>(),
        Counts<OperationCode::ReadIscsiStatistics, IscsiPart, ReadIscsiStatistics,
               TellIscsiStatistics>()};
    return Rows;
}

}  // namespace tavrosim
