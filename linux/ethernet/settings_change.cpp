#include "linux/ethernet/settings_change.h"

#include <cerrno>
#include <charconv>
#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "library/text/identifier.h"
#include "library/text/text.h"
#include "linux/ethernet/settings_table.h"
#include "linux/messages/error_texts.h"
#include "linux/system/blocked_signals.h"
#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

using tavrolib::Done;
using tavrolib::Outcome;
using tavrolib::Quoted;
using tavrolib::SettingDetails;
using tavrolib::Status;

// ---- What is to be changed --------------------------------------------------------------------

// A marked setting. One that is as it is wanted is not written, but is to stay so.
struct SettingChange {
    const SettingRow& row;
    ToldSetting before;
    std::string wanted;
    bool isWritten = false;
};

std::optional<std::uint32_t> WholeNumber(const std::string& value) {
    std::uint32_t number = 0;
    const char* const end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, number);
    return error == std::errc() && stop == end ? std::optional(number) : std::nullopt;
}

// The value in the one way of writing it.
std::string PlainValue(const SettingRow& row, const EthernetDevice& device,
                       const std::string& value) {
    if (row.isAddress) {
        const auto& own = device.link.permanentAddress;
        const std::string digits = tavrolib::NormalIdentifier(value);
        const bool isOwn = own && digits == tavrolib::NormalIdentifier(MacText(*own));
        return isOwn || value == tavrolib::NoAssignedAddress ? "0"
               : digits.empty()                              ? value
                                                             : digits;
    }
    const auto number = WholeNumber(value);
    return number ? std::to_string(*number) : value;
}

// The marked settings that the device can change; the refusal of the first that cannot be so.
// Throws SystemFailure where this process may not know what a setting is.
Outcome FindChanges(const EthernetDevice& device, const tavroapi::AdapterSettings& settings,
                    std::vector<SettingChange>& changes) {
    for (const SettingRow& row : SettingTable()) {
        const tavroapi::AdapterSetting& setting = settings.settings.at(row.number);
        if (setting.changed != "1") {
            continue;
        }
        ToldSetting told = row.tell(device);
        const std::string wanted = PlainValue(row, device, setting.value);
        const bool differs = wanted != PlainValue(row, device, told.value);
        if (differs && told.value.empty()) {
            throw SystemFailure(EPERM, "changing " +
                                           tavrolib::Utf8FromWide(SettingDetails(row.number)) +
                                           " of " + device.link.name);
        }
        if (differs) {
            Outcome outcome = tavrolib::CheckSettingValue(
                {row.number, told.value, told.choices, row.isAddress}, wanted);
            if (!outcome.IsDone()) {
                return outcome;
            }
        }
        const bool canChange =
            !told.choices.empty() || (row.isAddress && told.value != tavroapi::SettingNotAvailable);
        if (differs || canChange) {
            changes.push_back({row, std::move(told), wanted, differs});
        }
    }
    return Done();
}

// Of a setting that is not written only the features count that it shares with others.
Outcome PlanChange(const SettingChange& change, DevicePlan& plan) {
    if (change.isWritten) {
        return change.row.plan(change.wanted, plan);
    }
    const EthernetDevice target = plan.target;
    change.row.plan(change.wanted, plan);
    plan.target = target;
    return Done();
}

Outcome PlanChanges(const std::vector<SettingChange>& changes, DevicePlan& plan) {
    std::wstring names;
    for (const SettingChange& change : changes) {
        if (Outcome outcome = PlanChange(change, plan); !outcome.IsDone()) {
            return outcome;
        }
        names += SettingDetails(change.row.number) + L", ";
    }
    if (plan.contradiction) {
        return Refused(Status::SettingValueRefused, L"Two settings contradict each other.",
                       L"Give both the same value: the device has one feature for both.",
                       names + tavrolib::WideFromUtf8(*plan.contradiction));
    }
    return Done();
}

// ---- Making it so -----------------------------------------------------------------------------

// One thing that is set at once, where the device is to become another in it.
struct ChangeStep {
    bool (*differs)(const EthernetDevice& from, const EthernetDevice& to) = nullptr;
    void (*make)(EthernetDoor& door, const EthernetDevice& from,
                 const EthernetDevice& to) = nullptr;
    bool mayWantDown = false;  // many drivers do it only while the interface is down
};

NamedBits FeaturesThatDiffer(const EthernetDevice& from, const EthernetDevice& to) {
    NamedBits differing;
    for (const auto& [name, feature] : to.features) {
        const auto before = from.features.find(name);
        if (before == from.features.end() || before->second.isWanted != feature.isWanted) {
            differing.emplace(name, feature.isWanted);
        }
    }
    return differing;
}

// What the device has one of, or lacks.
template <auto Member, auto Set>
constexpr ChangeStep StepOf() {
    return {[](const EthernetDevice& from, const EthernetDevice& to) {
                return to.*Member && from.*Member != to.*Member;
            },
            [](EthernetDoor& door, const EthernetDevice& /*from*/, const EthernetDevice& to) {
                (door.*Set)(*(to.*Member));
            }};
}

// Many drivers let nobody set the delay while they choose it.
void MakeCoalescing(EthernetDoor& door, const EthernetDevice& from, const EthernetDevice& to) {
    if (to.coalescing->isAdaptive.value_or(false) &&
        from.coalescing->receiveDelay != to.coalescing->receiveDelay) {
        door.SetCoalescing({false, to.coalescing->receiveDelay});
    }
    door.SetCoalescing(*to.coalescing);
}

// The link comes last, since it may go down for a while.
constexpr ChangeStep ChangeSteps[] = {
    {[](const EthernetDevice& from, const EthernetDevice& to) {
         return !FeaturesThatDiffer(from, to).empty();
     },
     [](EthernetDoor& door, const EthernetDevice& from, const EthernetDevice& to) {
         door.SetFeatures(FeaturesThatDiffer(from, to));
     }},
    {[](const EthernetDevice& from, const EthernetDevice& to) {
         return to.coalescing && from.coalescing != to.coalescing;
     },
     MakeCoalescing},
    StepOf<&EthernetDevice::rings, &EthernetDoor::SetRings>(),
    StepOf<&EthernetDevice::channels, &EthernetDoor::SetChannels>(),
    StepOf<&EthernetDevice::pause, &EthernetDoor::SetPause>(),
    StepOf<&EthernetDevice::wakeUp, &EthernetDoor::SetWakeUp>(),
    {[](const EthernetDevice& from, const EthernetDevice& to) {
         return from.link.mtu != to.link.mtu;
     },
     [](EthernetDoor& door, const EthernetDevice& /*from*/, const EthernetDevice& to) {
         door.SetMtu(to.link.mtu);
     }},
    {[](const EthernetDevice& from, const EthernetDevice& to) {
         return to.link.address && from.link.address != to.link.address;
     },
     [](EthernetDoor& door, const EthernetDevice& /*from*/, const EthernetDevice& to) {
         door.SetAddress(*to.link.address);
     },
     true},
    StepOf<&EthernetDevice::linkModes, &EthernetDoor::SetLinkModes>(),
};

// ---- Whether it is so -------------------------------------------------------------------------

// How a setting is found. What is undecided may still come, and is taken for good if it does not.
enum class Finding : std::uint8_t { Good, Undecided, Bad };

// What the device cannot tell for now, such as the speed of a link that is being trained.
bool IsUnknown(const std::string& value) {
    return value == UnknownValue;
}

// A driver takes the nearest number that it can: another than there was, or again that one. Further
// off than twice or half of what was wanted it did not round, but ignored it.
Finding FindRounded(const SettingChange& change, const std::string& now) {
    const auto present = WholeNumber(now);
    if (!present) {
        return Finding::Bad;
    }
    if (present != WholeNumber(change.before.value)) {
        return Finding::Good;
    }
    const std::uint64_t wanted = WholeNumber(change.wanted).value_or(0);
    const bool isNear = *present <= 2 * wanted && wanted <= 2 * std::uint64_t{*present};
    return isNear ? Finding::Undecided : Finding::Bad;
}

Finding FindWanted(const SettingChange& change, const EthernetDevice& device) {
    const std::string now = PlainValue(change.row, device, change.row.tell(device).value);
    if (now == change.wanted) {
        return Finding::Good;
    }
    if (IsUnknown(now) || IsUnknown(change.wanted)) {
        return Finding::Undecided;
    }
    return change.row.isRounded && change.isWritten ? FindRounded(change, now) : Finding::Bad;
}

Finding FindAsBefore(const SettingChange& change, const EthernetDevice& device) {
    const std::string now = change.row.tell(device).value;
    if (now == change.before.value) {
        return Finding::Good;
    }
    return IsUnknown(now) || IsUnknown(change.before.value) ? Finding::Undecided : Finding::Bad;
}

// So often the device is read until it is as it is to be.
constexpr int Attempts = 20;

// The first change that is not found good in a while; null when all are.
const SettingChange* FirstUnlike(EthernetDoor& door, const std::vector<SettingChange>& changes,
                                 EthernetDevice (*read)(EthernetDoor& door),
                                 Finding (*find)(const SettingChange&, const EthernetDevice&)) {
    for (int attempt = 1;; ++attempt) {
        const EthernetDevice device = read(door);
        const SettingChange* bad = nullptr;
        bool isDecided = true;
        for (const SettingChange& change : changes) {
            const Finding finding = find(change, device);
            isDecided = isDecided && finding == Finding::Good;
            if (bad == nullptr && finding == Finding::Bad) {
                bad = &change;
            }
        }
        if (isDecided || attempt == Attempts) {
            return bad;
        }
        door.Wait();
    }
}

EthernetDevice ReadOnce(EthernetDoor& door) {
    return door.Read();
}

// Reads a device that may not be readable for a moment. Throws SystemFailure where it stays so, at
// once where the interface is gone.
EthernetDevice ReadPatiently(EthernetDoor& door) {
    for (int attempt = 1;; ++attempt) {
        try {
            return door.Read();
        } catch (const SystemFailure& failure) {
            if (failure.Error() == ENODEV || attempt == Attempts) {
                throw;
            }
        }
        door.Wait();
    }
}

// What is to be done on the device, and how far that has come.
struct Undertaking {
    EthernetDoor& door;
    const std::vector<SettingChange>& changes;
    const EthernetDevice& before;
    const EthernetDevice& target;
    std::size_t tried = 0;  // of the steps
};

// Makes all changes; the first that is not found on the device afterwards, null when all are.
const SettingChange* MakeChanges(Undertaking& work) {
    for (const ChangeStep& step : ChangeSteps) {
        ++work.tried;
        if (step.differs(work.before, work.target)) {
            step.make(work.door, work.before, work.target);
        }
    }
    return FirstUnlike(work.door, work.changes, ReadOnce, FindWanted);
}

// Makes everything as it was, and tells whether it is. Throws SystemFailure when the interface is
// gone, which leaves nothing to be as it was.
bool TakeBack(const Undertaking& work) {
    for (std::size_t number = work.tried; number-- > 0;) {
        const ChangeStep& step = ChangeSteps[number];
        if (step.differs(work.target, work.before)) {
            try {
                step.make(work.door, work.target, work.before);
            } catch (const std::exception&) {
                // What failed did nothing to take back; what counts is read afterwards.
                continue;
            }
        }
    }
    try {
        return FirstUnlike(work.door, work.changes, ReadPatiently, FindAsBefore) == nullptr;
    } catch (const SystemFailure& failure) {
        if (failure.Error() == ENODEV) {
            throw;
        }
        return false;
    } catch (const std::exception&) {
        return false;
    }
}

Outcome NotTakenBack(const std::wstring& reason) {
    return Refused(
        Status::SystemRefused, L"The changes failed, and not all of them could be taken back.",
        L"Run the command with \"-getadapinfo\" to see what the settings are now.", reason);
}

// Whether the step failed that the interface has to be taken down for.
bool IsRefusedWhileUp(const std::exception& failure, const Undertaking& work) {
    const auto* const refusal = dynamic_cast<const SystemFailure*>(&failure);
    return refusal != nullptr && refusal->Error() == EBUSY && work.before.link.isUp &&
           ChangeSteps[work.tried - 1].mayWantDown;
}

}  // namespace

void TellSettings(const EthernetDevice& device, tavroapi::AdapterSettings& settings) {
    for (const SettingRow& row : SettingTable()) {
        const ToldSetting told = row.tell(device);
        tavroapi::AdapterSetting& setting = settings.settings.at(row.number);
        setting.value = told.value;
        setting.choices = told.choices;
    }
}

Outcome ChangeSettings(EthernetDoor& door, const tavroapi::AdapterSettings& wanted) {
    const EthernetDevice before = door.Read();
    std::vector<SettingChange> changes;
    if (Outcome outcome = FindChanges(before, wanted, changes); !outcome.IsDone()) {
        return outcome;
    }
    DevicePlan plan{before};
    if (Outcome outcome = PlanChanges(changes, plan); !outcome.IsDone()) {
        return outcome;
    }
    const BlockedSignals blocked;
    Undertaking work{door, changes, before, plan.target};
    const SettingChange* notTaken = nullptr;
    try {
        notTaken = MakeChanges(work);
    } catch (const std::exception& failure) {
        const std::wstring reason = tavrolib::WideFromUtf8(failure.what());
        if (!TakeBack(work)) {
            return NotTakenBack(reason);
        }
        if (IsRefusedWhileUp(failure, work)) {
            return Refused(Status::SystemRefused, L"The system did not do that.",
                           L"Take the interface down first: its address cannot be changed while "
                           L"it is up.",
                           reason);
        }
        throw;
    }
    if (notTaken == nullptr) {
        return Done();
    }
    const std::wstring details =
        SettingDetails(notTaken->row.number) + L", value " + Quoted(notTaken->wanted);
    if (!TakeBack(work)) {
        return NotTakenBack(details);
    }
    return Refused(Status::SystemRefused, L"The driver did not take the value of the setting.",
                   L"Leave the setting as it is.", details);
}

}  // namespace tavrolinux
