#include "linux/ethernet/settings_change.h"

#include <charconv>
#include <string>
#include <vector>

#include "library/text/identifier.h"
#include "library/text/text.h"
#include "linux/ethernet/settings_table.h"
#include "linux/messages/error_texts.h"
#include "linux/system/failure.h"

namespace tavrolinux {
namespace {

using tavrolib::Done;
using tavrolib::Outcome;
using tavrolib::Quoted;
using tavrolib::SettingDetails;
using tavrolib::Status;

// ---- What is to be changed --------------------------------------------------------------------

struct SettingChange {
    const SettingRow& row;
    ToldSetting before;
    std::string wanted;
};

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
    std::uint32_t number = 0;
    const char* const end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, number);
    return error == std::errc() && stop == end ? std::to_string(number) : value;
}

// The marked settings that differ; the refusal of the first that cannot be so.
Outcome FindChanges(const EthernetDevice& device, const tavroapi::AdapterSettings& settings,
                    std::vector<SettingChange>& changes) {
    for (const SettingRow& row : SettingTable()) {
        const tavroapi::AdapterSetting& setting = settings.settings.at(row.number);
        if (setting.changed != "1") {
            continue;
        }
        ToldSetting told = row.tell(device);
        const std::string wanted = PlainValue(row, device, setting.value);
        if (wanted == PlainValue(row, device, told.value)) {
            continue;
        }
        Outcome outcome = tavrolib::CheckSettingValue(
            {row.number, told.value, told.choices, row.isAddress}, wanted);
        if (!outcome.IsDone()) {
            return outcome;
        }
        changes.push_back({row, std::move(told), wanted});
    }
    return Done();
}

Outcome PlanChanges(const std::vector<SettingChange>& changes, DevicePlan& plan) {
    std::wstring names;
    for (const SettingChange& change : changes) {
        if (Outcome outcome = change.row.plan(change.wanted, plan); !outcome.IsDone()) {
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
    bool (*differs)(const EthernetDevice& from, const EthernetDevice& to);
    void (*make)(EthernetDoor& door, const EthernetDevice& from, const EthernetDevice& to);
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

// The link comes last, since it may go down for a while.
constexpr ChangeStep ChangeSteps[] = {
    {[](const EthernetDevice& from, const EthernetDevice& to) {
         return !FeaturesThatDiffer(from, to).empty();
     },
     [](EthernetDoor& door, const EthernetDevice& from, const EthernetDevice& to) {
         door.SetFeatures(FeaturesThatDiffer(from, to));
     }},
    StepOf<&EthernetDevice::coalescing, &EthernetDoor::SetCoalescing>(),
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
     }},
    StepOf<&EthernetDevice::linkModes, &EthernetDoor::SetLinkModes>(),
};

// ---- Whether it is so -------------------------------------------------------------------------

// A driver may take the nearest number that it can; that is nearer than what there was.
bool IsTaken(const SettingChange& change, const EthernetDevice& device) {
    const auto plain = [&](const std::string& value) {
        return PlainValue(change.row, device, value);
    };
    const std::string now = plain(change.row.tell(device).value);
    if (now == change.wanted || !change.row.isRounded) {
        return now == change.wanted;
    }
    const auto distance = [&change](const std::string& value) {
        const std::int64_t wanted = std::stoll(change.wanted);
        const std::int64_t present = std::stoll(value);
        return present < wanted ? wanted - present : present - wanted;
    };
    return distance(now) < distance(plain(change.before.value));
}

bool IsAsBefore(const SettingChange& change, const EthernetDevice& device) {
    return change.row.tell(device).value == change.before.value;
}

// The first change for which the condition does not come true in a while; null when all do.
const SettingChange* FirstUnlike(EthernetDoor& door, const std::vector<SettingChange>& changes,
                                 bool (*isTrue)(const SettingChange&, const EthernetDevice&)) {
    constexpr int Attempts = 20;
    for (int attempt = 1;; ++attempt) {
        const EthernetDevice device = door.Read();
        const SettingChange* unlike = nullptr;
        for (const SettingChange& change : changes) {
            if (unlike == nullptr && !isTrue(change, device)) {
                unlike = &change;
            }
        }
        if (unlike == nullptr || attempt == Attempts) {
            return unlike;
        }
        door.Wait();
    }
}

// Makes everything as it was, and tells whether it is: the steps up to `last` were tried.
bool TakeBack(EthernetDoor& door, const std::vector<SettingChange>& changes,
              const EthernetDevice& before, const EthernetDevice& target, std::size_t last) {
    try {
        for (std::size_t number = last + 1; number-- > 0;) {
            const ChangeStep& step = ChangeSteps[number];
            if (step.differs(target, before)) {
                try {
                    step.make(door, target, before);
                } catch (const SystemFailure&) {
                    // What failed did nothing to take back; what counts is read afterwards.
                    continue;
                }
            }
        }
        return FirstUnlike(door, changes, IsAsBefore) == nullptr;
    } catch (const SystemFailure&) {
        return false;
    }
}

Outcome NotTakenBack(const std::wstring& reason) {
    return Refused(
        Status::SystemRefused, L"The changes failed, and not all of them could be taken back.",
        L"Run the command with \"-getadapinfo\" to see what the settings are now.", reason);
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
    constexpr std::size_t Last = std::size(ChangeSteps) - 1;
    for (std::size_t number = 0; number <= Last; ++number) {
        const ChangeStep& step = ChangeSteps[number];
        if (!step.differs(before, plan.target)) {
            continue;
        }
        try {
            step.make(door, before, plan.target);
        } catch (const SystemFailure& failure) {
            if (!TakeBack(door, changes, before, plan.target, number)) {
                return NotTakenBack(tavrolib::WideFromUtf8(failure.what()));
            }
            throw;
        }
    }
    const SettingChange* const notTaken = FirstUnlike(door, changes, IsTaken);
    if (notTaken == nullptr) {
        return Done();
    }
    const std::wstring details =
        SettingDetails(notTaken->row.number) + L", value " + Quoted(notTaken->wanted);
    if (!TakeBack(door, changes, before, plan.target, Last)) {
        return NotTakenBack(details);
    }
    return Refused(Status::SystemRefused, L"The driver did not take the value of the setting.",
                   L"Leave the setting as it is.", details);
}

}  // namespace tavrolinux
