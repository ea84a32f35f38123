#pragma once

#include "tavroapi/partition_records.h"

namespace tavro {

// Prints flow control and functions port by port, as the record has them.
void ShowPartitionSummary(const tavroapi::PartitionConfig& config);

}  // namespace tavro
