// What an iSCSI function tells of itself: information, default parameters, statistics.
#include "simulator/model/families.h"
#include "simulator/model/iscsi_parameters.h"
#include "simulator/model/iscsi_storage.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavrosim {
namespace {

using tavroapi::IscsiParameterRecord;
using tavroapi::IscsiPortRecord;
using tavroapi::OperationCode;

constexpr std::string_view DriverWithoutStatistics = "bnx2i";

Outcome ReadPort(const Host& host, const std::string& request, IscsiPortRecord& record) {
    const IscsiRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    const IscsiHardware& hardware = function.Part().hardware;
    const TcpIp& tcpIp = function.Part().tcpIp;
    record.texts = {
        std::to_string(function.located.function->number),
        hardware.driver,
        hardware.driverVersion,
        function.located.function->mac,
        function.located.adapter->name,
        hardware.serialNumber,
        hardware.linkState,
        hardware.linkSpeed,
        tcpIp.dhcp,
        tcpIp.address,
        tcpIp.subnetMask,
        tcpIp.gateway,
        tcpIp.vlanId == "0" ? "No" : "Yes",
        tcpIp.vlanId,
        tcpIp.vlanPriority,
        tcpIp.maxFrameSize,
        tcpIp.dhcpIPv6,
        tcpIp.addressIPv6,
        tcpIp.prefixLengthIPv6,
        tcpIp.gatewayIPv6,
        std::to_string(function.Storage().sessions.size()),
        hardware.firmwareVersion,
    };
    return Done();
}

Outcome ReadDefaults(const Host& host, const std::string& request, IscsiParameterRecord& record) {
    const IscsiRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    const IscsiParameters& parameters = DefaultParameters;
    record.texts = {
        parameters.maxConnections,      parameters.initialR2T,         parameters.immediateData,
        parameters.maxBurstLength,      parameters.firstBurstLength,   parameters.timeToWait,
        parameters.timeToRetain,        parameters.maxOutstandingR2T,  parameters.dataPduInOrder,
        parameters.dataSequenceInOrder, parameters.errorRecoveryLevel, parameters.maxReceiveLength,
        parameters.headerDigest,        parameters.dataDigest,
    };
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

Outcome ReadStatistics(Host& host, const std::string& request, IscsiParameterRecord& record) {
    const IscsiRequest function(host, request);
    if (function.IsRefused()) {
        return function.refusal;
    }
    const IscsiHardware& hardware = function.Part().hardware;
    if (hardware.driver == DriverWithoutStatistics) {
        return RefusedStorage(StorageStatus::NoStatistics,
                              L"The driver " + Quoted(hardware.driver) + L" keeps no statistics.",
                              L"Use a port with another driver.");
    }
    IscsiStatistics& statistics = function.Storage().statistics;
    LetTrafficHappen(statistics, function.Storage().sessions.size());
    std::size_t position = 0;
    std::apply(
        [&](const auto&... member) {
            ((record.texts.at(position++) = std::to_string(statistics.*member.member)), ...);
        },
        IscsiStatistics::Members());
    return Done();
}

constexpr OperationModel Rows[] = {Reads<OperationCode::ReadIscsiPort, ReadPort>(),
                                   Reads<OperationCode::ReadIscsiDefaults, ReadDefaults>(),
                                   Changes<OperationCode::ReadIscsiStatistics, ReadStatistics>()};

}  // namespace

std::span<const OperationModel> IscsiPortInfoOperations() {
    return Rows;
}

}  // namespace tavrosim
