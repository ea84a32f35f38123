#pragma once

#include "twin/diff/difference.h"
#include "twin/documents/host_document.h"

namespace tavrohost {

// Writes the difference to standard output, for people or as JSON Patch that fits the document of
// the host before as it stands. Throws TroubleError when it cannot be written.
void ShowDifference(const HostDocument& before, const Difference& difference, bool asPatch);

}  // namespace tavrohost
