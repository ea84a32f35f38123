#pragma once

#include "mgmt/library.h"
#include "twin/run/program_job.h"

namespace tavrohost {

// The library that was chosen. For a twin this process's environment is changed so that the
// simulator plays the host of that file and nothing else, and gets none of the secrets that it is
// given but those that the file holds at first.
tavro::LibrarySource SourceOf(const LibraryChoice& choice);

// The choice as a child is told it, both ways.
tavrolib::Json JsonOf(const LibraryChoice& library);
LibraryChoice LibraryFrom(const tavrolib::Json& json);

}  // namespace tavrohost
