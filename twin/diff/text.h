#pragma once

#include <string>

#include "twin/diff/difference.h"

namespace tavrohost {

// The changes for people, a line for each, below the adapter, port and function that they belong
// to: "tcpIp.address: 192.0.2.20 → 192.0.2.30". What came or went as a whole is followed by what it
// holds beyond the usual. UTF-8 without control characters but line ends; never a secret; empty
// where nothing changed.
std::string TextOf(const Difference& difference);

}  // namespace tavrohost
