#pragma once

#include <string>

#include "tavroapi/partition_records.h"

// `-npar <MAC> -get` and `-npar <MAC> -set`: how an adapter is divided into functions.
namespace tavro {

// How much of a configuration is shown.
enum class PartitionView { Summary, Detail };

// Reads and shows the configuration, or a notice in the state in which there is none; the other
// states, a failed reading and a library that lacks an entry point show nothing.
void ShowPartitionConfig(const std::string& mac, PartitionView view);

// Prints flow control and functions port by port, as the record has them.
void ShowPartitionSummary(const tavroapi::PartitionConfig& config);

// Shows the configuration in detail.
void ShowPartitions(const std::string& mac);

// Shows a summary of the configuration, asks for a completely new one, and writes it once it is
// confirmed. Adapters with four ports and partition states that allow no changes are refused. A
// library that lacks an entry point for it ends it without a word before the first question.
void SetPartitions(const std::string& mac);

}  // namespace tavro
