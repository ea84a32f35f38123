#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "linux/system/roots.h"

// The file that states the name of the host's iSCSI initiator, for everything on this host that
// speaks iSCSI.
namespace tavrolinux {

inline constexpr std::size_t LongestIscsiName = 223;

// Where it lies: "iscsi/initiatorname.iscsi" under `/etc`.
std::filesystem::path InitiatorNameFile(const Roots& roots);

// The name of the host's iSCSI initiator, as the file states it; empty where there is no such file,
// or it states none. Throws SystemFailure where this process may not read it.
std::string ReadInitiatorName(const Roots& roots);

// The same, and empty where it cannot be read.
std::string InitiatorNameIfReadable(const Roots& roots);

// The name that the first line "InitiatorName=..." of the text states; blanks around it do not
// count, nor do lines that start with '#'. A line with no name, one longer than LongestIscsiName or
// with control characters states none. A mark of the encoding in front of the text does not count.
// Empty when no line states a name. Never throws for whatever bytes.
std::string ParseInitiatorName(std::string_view text);

// The text with `name` in each such line, or in a new last one that ends as the others do;
// everything else stays as it is.
std::string WithInitiatorName(std::string_view text, std::string_view name);

// Whether initiators may be called so: 1 to 223 bytes, "iqn." and letters, figures or "-.:_", or
// "eui." with 16 or "naa." with 16 or 32 hexadecimal figures. A byte of another script than Latin
// counts as a letter.
bool IsInitiatorName(std::string_view name);

}  // namespace tavrolinux
