#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "linux/iscsi/big_endian.h"

// Reading what logical units answer to SCSI commands. Whatever the bytes are, nothing throws: what
// a short answer lacks is empty.
namespace tavrolinux {

using ScsiBytes = WireBytes;

// Whether the answer is long enough for a list of units, be it an empty one.
bool IsLunList(ScsiBytes answer);

// The units that REPORT LUNS lists, each once, as two bytes that address them on the wire.
// Well-known units and those of deeper levels are left out.
std::vector<std::uint16_t> ParseReportedLuns(ScsiBytes answer);

// How many units the target says that there are, whether or not the answer has room for them.
std::size_t ReportedLunCount(ScsiBytes answer);

// The number of a unit as people write it.
std::uint16_t LunNumber(std::uint16_t address);

// Why a unit refuses a command, from the data of the refusal: the sense and, before it, its size.
// Nothing where the data is not what its own sizes say.
std::optional<std::uint8_t> ParseSenseKey(ScsiBytes data);

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
