#pragma once

#include <cstdint>

#include "mgmt/message.h"
#include "tavroapi/ethernet_records.h"

namespace tavro {

// How the value of an adapter setting is edited. Every other value is like `ShowOnly`.
enum class EditKind : std::uint32_t {
    ShowOnly = 0,  // nothing is asked
    List = 1,      // one of the numbered choices
    Range = 2,     // a multiple of a step between two bounds
    Address = 3,   // any text
};

// Shows a setting's title and value, and asks once for another value. An accepted answer replaces
// the value and, when that makes a difference, sets `changed` to "1"; a refused one is reported and
// leaves the setting as it was.
void EditAdapterSetting(tavroapi::AdapterSetting& setting, MessageId title, EditKind kind);

}  // namespace tavro
