// The logical units behind a target.
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "linux/iscsi/discovery.h"
#include "linux/iscsi/login.h"
#include "linux/iscsi/login_refusals.h"
#include "linux/iscsi/rows.h"
#include "linux/iscsi/scsi.h"
#include "linux/iscsi/target_name.h"
#include "linux/system/size_text.h"

namespace tavrolinux {
namespace {

namespace iscsi_lun = tavroapi::iscsi_lun;
using tavroapi::LoginOptions;
using tavroapi::LunRecord;

// A target with many units that each take their time is not waited for without end.
constexpr std::chrono::seconds LunListLimit{30};

// A unit that has something to tell about itself (that it was restarted, say) refuses the first
// commands, and one that is busy takes them a little later. Every other refusal is its last word.
CommandAnswer Patiently(const std::function<CommandAnswer()>& ask) {
    constexpr int Attempts = 3;
    constexpr std::chrono::milliseconds Pause{200};
    constexpr std::uint8_t Busy = 0x08;
    constexpr std::uint8_t TaskSetFull = 0x28;
    constexpr std::uint8_t UnitAttention = 0x06;
    CommandAnswer answer = ask();
    for (int attempt = 1; attempt < Attempts && !answer.isGood; ++attempt) {
        const bool isBusy = answer.status == Busy || answer.status == TaskSetFull;
        if (!isBusy && answer.senseKey != UnitAttention) {
            break;
        }
        if (isBusy) {
            std::this_thread::sleep_for(Pause);
        }
        answer = ask();
    }
    return answer;
}

// The units that the target lists. Throws IscsiFailure.
std::vector<std::uint16_t> ReadLunList(Session& session, const Portal& portal) {
    const CommandAnswer listed = Patiently([&] { return session.ReportLuns(); });
    if (!listed.isGood) {
        throw IscsiFailure(RequestRefused(portal, "asking for the LUNs",
                                          ScsiReason(listed.status, listed.senseKey)));
    }
    if (!IsLunList(listed.bytes)) {
        throw IscsiFailure(Invalid(portal, "asking for the LUNs"));
    }
    if (ReportedLunCount(listed.bytes) > MostLuns) {
        throw IscsiFailure(TellsTooMuch(portal, std::to_string(MostLuns) + " LUNs"));
    }
    return ParseReportedLuns(listed.bytes);
}

std::optional<Capacity> CapacityOf(Session& session, std::uint16_t lun) {
    const CommandAnswer small = Patiently([&] { return session.ReadCapacity10(lun); });
    const auto capacity = small.isGood ? ParseCapacity10(small.bytes) : std::optional<Capacity>();
    if (capacity) {
        return capacity;
    }
    const CommandAnswer large = Patiently([&] { return session.ReadCapacity16(lun); });
    return large.isGood ? ParseCapacity16(large.bytes) : std::nullopt;
}

// What the unit tells of itself; what it does not tell stays empty.
std::optional<LunRecord> ReadLun(Session& session, std::uint16_t lun) {
    const Inquiry inquiry = ParseInquiry(Patiently([&] { return session.Inquire(lun); }).bytes);
    if (!inquiry.isThere) {
        return std::nullopt;
    }
    LunRecord record;
    record.texts[iscsi_lun::Number] = std::to_string(LunNumber(lun));
    record.texts[iscsi_lun::Vendor] = inquiry.vendor;
    record.texts[iscsi_lun::Product] = inquiry.product;
    if (inquiry.hasBlocks) {
        if (const auto capacity = CapacityOf(session, lun)) {
            record.texts[iscsi_lun::Capacity] = SizeText(capacity->blocks, capacity->blockSize);
            record.texts[iscsi_lun::BlockSize] = std::to_string(capacity->blockSize);
        }
    }
    record.texts[iscsi_lun::SerialNumber] =
        ParseSerialNumber(Patiently([&] { return session.ReadSerialNumber(lun); }).bytes);
    record.texts[iscsi_lun::ConnectionState] = "Not connected";
    return record;
}

void ReadLuns(const Place& at, const KnownTarget& target, const LoginOptions& login,
              std::list<LunRecord>& luns) {
    SessionPlan plan = PlanFor(at, target.at.portal, target.name);
    plan.end = std::chrono::steady_clock::now() + LunListLimit;
    Session session(plan, login);
    for (const std::uint16_t lun : ReadLunList(session, target.at.portal)) {
        if (auto record = ReadLun(session, lun)) {
            luns.push_back(std::move(*record));
        }
    }
    End(session);
}

}  // namespace

// A target that has accepted a login is asked with it, as it was. Any other one is looked for at
// the portals, and asked with the login of the portal that tells it.
Outcome ListLuns(const Place& at, const std::string& text, std::list<LunRecord>& luns) {
    luns.clear();
    return WithRefusals([&] {
        const std::string name = TargetNameOf(text);
        const State state = at.state.Read();
        const KeptLogin* const kept = FindKeptLogin(state, at, name);
        if (kept == nullptr) {
            const KnownTarget target = FindTarget(at, state, name);
            ReadLuns(at, target, EffectiveLogin(*target.login, state.initiatorLogin).Options(),
                     luns);
            return Done();
        }
        try {
            ReadLuns(at, AcceptedBy(*kept), kept->login, luns);
        } catch (const IscsiFailure& failure) {
            const Outcome& refusal = failure.Refusal();
            if (!refusal.error ||
                refusal.status != static_cast<std::uint32_t>(Status::LoginRefused)) {
                throw;
            }
            throw IscsiFailure(Refused(
                Status::LoginRefused, L"The target does not accept the login that is kept of it.",
                L"Log in again with \"-target -login\", or remove the target.",
                refusal.error->details));
        }
        return Done();
    });
}

}  // namespace tavrolinux
