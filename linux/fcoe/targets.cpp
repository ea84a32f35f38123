// The targets that an FCoE function sees, and their LUNs.
#include <algorithm>
#include <string_view>
#include <utility>

#include "library/text/identifier.h"
#include "linux/fcoe/fc_host.h"
#include "linux/fcoe/kernel_texts.h"
#include "linux/inventory/fibre_channel_names.h"
#include "linux/system/attribute.h"
#include "linux/system/size_text.h"

namespace tavrolinux {
namespace {

namespace fcoe_target = tavroapi::fcoe_target;
namespace fcoe_target_info = tavroapi::fcoe_target_info;
namespace fcoe_lun = tavroapi::fcoe_lun;

constexpr const char* TargetTypes = "FCP";

std::string FcidOf(const FcTarget& target) {
    return HexadecimalText(ReadNumber(target.attributes / "port_id"), tavrolib::FcidDigits);
}

std::string ClassesOf(const FcTarget& target) {
    return KnownText(ReadAttribute(target.attributes / "supported_classes"));
}

// -1 while the target has no number on the bus.
std::optional<std::uint64_t> ScsiTargetOf(const FcTarget& target) {
    return ReadNumber(target.attributes / "scsi_target_id");
}

std::string TextOfNumber(std::optional<std::uint64_t> number) {
    return number ? std::to_string(*number) : std::string();
}

std::optional<FcTarget> FindTarget(const Place& at, const std::string& name) {
    const std::string wanted = tavrolib::NormalIdentifier(name);
    for (FcTarget& target : FcTargetsOf(at)) {
        if (!wanted.empty() && wanted == tavrolib::NormalIdentifier(target.portWwn)) {
            return std::move(target);
        }
    }
    return std::nullopt;
}

// The name of the device's disk, "sdb"; empty when it is none.
std::string DiskOf(const std::filesystem::path& device) {
    const auto names = NamesIn(device / "block");
    return names.empty() ? std::string() : names.front();
}

// The kernel counts a disk's size in sectors of 512, whatever its blocks are. Without a medium it
// has none.
std::string CapacityOf(const std::filesystem::path& block) {
    constexpr std::uint32_t Sector = 512;
    const std::uint64_t sectors = ReadNumber(block / "size").value_or(0);
    return sectors == 0 ? std::string() : SizeText(sectors, Sector);
}

tavroapi::FcoeLunRecord LunRecordOf(const std::filesystem::path& device, std::uint64_t number) {
    const std::string disk = DiskOf(device);
    const std::filesystem::path block = device / "block" / disk;
    tavroapi::FcoeLunRecord record;
    auto& texts = record.texts;
    texts[fcoe_lun::Item] = std::to_string(number);
    texts[fcoe_lun::Vendor] = ReadAttribute(device / "vendor");
    texts[fcoe_lun::Product] = ReadAttribute(device / "model");
    texts[fcoe_lun::Revision] = ReadAttribute(device / "rev");
    if (!disk.empty()) {
        texts[fcoe_lun::Capacity] = CapacityOf(block);
        texts[fcoe_lun::BlockSize] = TextOfNumber(ReadNumber(block / "queue/logical_block_size"));
        texts[fcoe_lun::DeviceName] = "/dev/" + disk;
    }
    texts[fcoe_lun::ConnectionState] = ScsiStateText(ReadAttribute(device / "state"));
    texts[fcoe_lun::ScsiUnit] = std::to_string(number);
    texts[fcoe_lun::DeviceType] = ScsiTypeText(ReadNumber(device / "type"));
    return record;
}

}  // namespace

Outcome ListFcoeTargets(const Place& at, std::list<tavroapi::FcoeTargetRecord>& records) {
    records.clear();
    for (const FcTarget& target : FcTargetsOf(at)) {
        auto& texts = records.emplace_back().texts;
        texts[fcoe_target::Fcid] = FcidOf(target);
        texts[fcoe_target::PortWwn] = target.portWwn;
        texts[fcoe_target::NodeWwn] = ReadWwn(target.attributes / "node_name");
        texts[fcoe_target::Role] = ReadAttribute(target.attributes / "roles");
        texts[fcoe_target::State] = KnownText(ReadAttribute(target.attributes / "port_state"));
        texts[fcoe_target::SupportedClasses] = ClassesOf(target);
        texts[fcoe_target::SupportedTypes] = TargetTypes;
        texts[fcoe_target::ScsiBus] = std::to_string(target.bus);
        texts[fcoe_target::ScsiTarget] = TextOfNumber(ScsiTargetOf(target));
    }
    return Done();
}

Outcome ReadFcoeTarget(const Place& at, const std::string& name,
                       tavroapi::FcoeTargetInfoRecord& record) {
    const auto target = FindTarget(at, name);
    if (!target) {
        return tavrolib::UnknownFcoeTarget(name);
    }
    record.texts[fcoe_target_info::PortWwn] = target->portWwn;
    record.texts[fcoe_target_info::NodeWwn] = ReadWwn(target->attributes / "node_name");
    record.texts[fcoe_target_info::Fcid] = FcidOf(*target);
    record.texts[fcoe_target_info::State] =
        KnownText(ReadAttribute(target->attributes / "port_state"));
    record.texts[fcoe_target_info::SupportedClasses] = ClassesOf(*target);
    record.texts[fcoe_target_info::SupportedTypes] = TargetTypes;
    return Done();
}

Outcome ListFcoeLuns(const Place& at, const std::string& name,
                     std::list<tavroapi::FcoeLunRecord>& records) {
    const auto target = FindTarget(at, name);
    if (!target) {
        return tavrolib::UnknownFcoeTarget(name);
    }
    records.clear();
    const auto number = ScsiTargetOf(*target);
    const auto port = Resolved(target->attributes / "device");
    if (!number || !port) {
        return Done();
    }
    // "target3:0:1" has the units "3:0:1:0" and so on.
    const std::string place = at.interface.fcHost->substr(std::string_view("host").size()) + ':' +
                              std::to_string(target->bus) + ':' + std::to_string(*number);
    const std::filesystem::path folder = *port / ("target" + place);
    std::vector<std::pair<std::uint64_t, std::string>> units;
    for (const std::string& unit : NamesIn(folder)) {
        if (const auto lun = NumberBehind(place + ':', unit)) {
            units.emplace_back(*lun, unit);
        }
    }
    std::ranges::sort(units);
    for (const auto& [lun, unit] : units) {
        records.push_back(LunRecordOf(folder / unit, lun));
    }
    return Done();
}

// The kernel gives a target its place on the bus anew at each start.
Outcome ListFcoeBindings(const Place& /*at*/, std::list<tavroapi::FcoeBindingRecord>& records) {
    records.clear();
    return Done();
}

}  // namespace tavrolinux
