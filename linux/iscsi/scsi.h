#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

// Reading what logical units answer to SCSI commands. Whatever the bytes are, nothing throws: what
// a short answer lacks is empty.
namespace tavrolinux {

using ScsiBytes = std::span<const std::uint8_t>;

// The units that REPORT LUNS lists, as two bytes that address them on the wire. Well-known units
// and those of deeper levels are left out.
std::vector<std::uint16_t> ParseReportedLuns(ScsiBytes answer);

// The number of a unit as people write it.
std::uint16_t LunNumber(std::uint16_t address);

// What the standard INQUIRY tells.
struct Inquiry {
    bool isThere = false;    // a unit is connected at that address
    bool hasBlocks = false;  // it is a disk or the like, which has a capacity
    std::string vendor;
    std::string product;
};
Inquiry ParseInquiry(ScsiBytes answer);

// The unit's serial number in its vital product data (page 0x80); empty when that is another page.
std::string ParseSerialNumber(ScsiBytes answer);

struct Capacity {
    std::uint64_t blocks = 0;
    std::uint32_t blockSize = 0;
};

// What READ CAPACITY (10) and (16) tell; nothing for a short answer, and for (10) when the unit is
// too large for it.
std::optional<Capacity> ParseCapacity10(ScsiBytes answer);
std::optional<Capacity> ParseCapacity16(ScsiBytes answer);

}  // namespace tavrolinux
