#include "linux/iscsi/wire.h"

#include <iscsi/iscsi.h>

#include "linux/iscsi/connection.h"

namespace tavrolinux {
namespace {

constexpr int LongestShortAnswer = 255;
constexpr int ShortCapacity = 8;
constexpr int LongCapacity = 32;
constexpr int LongestLunList = 8 + 8 * static_cast<int>(MostLuns);

}  // namespace

Session::Session(const SessionPlan& plan, const tavroapi::LoginOptions& login)
    : connection_(std::make_unique<Connection>(plan, login)) {}

Session::~Session() = default;

std::vector<DiscoveredTarget> Session::Discover() {
    return connection_->Discover();
}

CommandAnswer Session::ReportLuns() {
    return connection_->Command(
        LongestLunList, [](iscsi_context* context, auto* done, void* progress) {
            return iscsi_reportluns_task(context, 0, LongestLunList, done, progress);
        });
}

CommandAnswer Session::Inquire(std::uint16_t lun) {
    return connection_->Command(
        LongestShortAnswer, [lun](iscsi_context* context, auto* done, void* progress) {
            return iscsi_inquiry_task(context, lun, 0, 0, LongestShortAnswer, done, progress);
        });
}

CommandAnswer Session::ReadSerialNumber(std::uint16_t lun) {
    constexpr int Page = 0x80;
    return connection_->Command(
        LongestShortAnswer, [lun](iscsi_context* context, auto* done, void* progress) {
            return iscsi_inquiry_task(context, lun, 1, Page, LongestShortAnswer, done, progress);
        });
}

CommandAnswer Session::ReadCapacity10(std::uint16_t lun) {
    return connection_->Command(
        ShortCapacity, [lun](iscsi_context* context, auto* done, void* progress) {
            return iscsi_readcapacity10_task(context, lun, 0, 0, done, progress);
        });
}

CommandAnswer Session::ReadCapacity16(std::uint16_t lun) {
    return connection_->Command(LongCapacity,
                                [lun](iscsi_context* context, auto* done, void* progress) {
                                    return iscsi_readcapacity16_task(context, lun, done, progress);
                                });
}

void Session::LogOut() {
    connection_->LogOut();
}

}  // namespace tavrolinux
