// The counters of an FCoE function.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <limits>
#include <string_view>

#include "linux/fcoe/fc_host.h"
#include "linux/system/attribute.h"
#include "linux/system/descriptor.h"
#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

namespace fcoe_statistics = tavroapi::fcoe_statistics;

// Where a counter stands: among those of the host, or of the controller below it.
enum class Keeper { Host, Controller };

struct CounterFile {
    fcoe_statistics::Position position;
    Keeper keeper;
    std::string_view file;
};

// The kernel keeps no others of those that are told.
constexpr CounterFile CounterFiles[] = {
    {fcoe_statistics::SecondsSinceReset, Keeper::Host, "seconds_since_last_reset"},
    {fcoe_statistics::TransmittedFrames, Keeper::Host, "tx_frames"},
    {fcoe_statistics::TransmittedWords, Keeper::Host, "tx_words"},
    {fcoe_statistics::ReceivedFrames, Keeper::Host, "rx_frames"},
    {fcoe_statistics::ReceivedWords, Keeper::Host, "rx_words"},
    {fcoe_statistics::LoopInitializations, Keeper::Host, "lip_count"},
    {fcoe_statistics::NotOperationalSequences, Keeper::Host, "nos_count"},
    {fcoe_statistics::ErrorFrames, Keeper::Host, "error_frames"},
    {fcoe_statistics::DumpedFrames, Keeper::Host, "dumped_frames"},
    {fcoe_statistics::LinkFailures, Keeper::Host, "link_failure_count"},
    {fcoe_statistics::SynchronizationLosses, Keeper::Host, "loss_of_sync_count"},
    {fcoe_statistics::SignalLosses, Keeper::Host, "loss_of_signal_count"},
    {fcoe_statistics::ProtocolErrors, Keeper::Host, "prim_seq_protocol_err_count"},
    {fcoe_statistics::InvalidWords, Keeper::Host, "invalid_tx_word_count"},
    {fcoe_statistics::InvalidCrcs, Keeper::Host, "invalid_crc_count"},
    {fcoe_statistics::InputRequests, Keeper::Host, "fcp_input_requests"},
    {fcoe_statistics::OutputRequests, Keeper::Host, "fcp_output_requests"},
    {fcoe_statistics::ControlRequests, Keeper::Host, "fcp_control_requests"},
    {fcoe_statistics::InputMegabytes, Keeper::Host, "fcp_input_megabytes"},
    {fcoe_statistics::OutputMegabytes, Keeper::Host, "fcp_output_megabytes"},
    {fcoe_statistics::MissedFipAdvertisements, Keeper::Controller, "lesb/miss_fka"},
    {fcoe_statistics::AbortedExchanges, Keeper::Host, "fcp_packet_aborts"},
    {fcoe_statistics::VirtualLinkFailures, Keeper::Controller, "lesb/vlink_fail"},
};

// A counter of all ones is one that the driver does not keep.
std::string CounterText(std::optional<std::uint64_t> counter) {
    return counter.value_or(std::numeric_limits<std::uint64_t>::max()) ==
                   std::numeric_limits<std::uint64_t>::max()
               ? std::string()
               : std::to_string(*counter);
}

void WriteAttribute(const std::filesystem::path& file, std::string_view text,
                    const std::string& action) {
    const Descriptor descriptor(::open(file.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK));
    if (!descriptor ||
        ::write(descriptor.Get(), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        // A driver that has no such thing has no such file, or does not find it.
        throw SystemFailure(errno == ENOENT ? EOPNOTSUPP : errno, action, FileRight);
    }
}

}  // namespace

Outcome ReadFcoeStatistics(const Place& at, std::uint32_t /*number*/,
                           tavroapi::FcoeStatisticsRecord& record) {
    const FcHost host = FcHostOf(at);
    for (const auto& [position, keeper, file] : CounterFiles) {
        const auto folder = keeper == Keeper::Host ? std::optional(host.attributes / "statistics")
                                                   : host.controller;
        record.texts[position] = folder ? CounterText(ReadNumber(*folder / file)) : std::string();
    }
    return Done();
}

Outcome ResetFcoeStatistics(const Place& at, std::uint32_t number,
                            tavroapi::FcoeStatisticsRecord& record) {
    const FcHost host = FcHostOf(at);
    WriteAttribute(host.attributes / "statistics/reset_statistics", "1",
                   "resetting the statistics of " + *at.interface.fcHost);
    return ReadFcoeStatistics(at, number, record);
}

}  // namespace tavrolinux
