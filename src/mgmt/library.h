#pragma once

#include <string>

#include "platform/shared_library.h"
#include "tavroapi/entry_points.h"

namespace tavro {

// The management library, loaded before the entry function runs and kept until the process ends. It
// may be empty; nothing is reported at that moment.
const platform::SharedLibrary& ManagementLibrary();

// Looks an entry point up by its name, anew at each call. Null when the library or that export is
// missing.
template <class Entry>
typename Entry::Function* ResolveEntryPoint() {
    return ManagementLibrary().template Resolve<typename Entry::Function>(Entry::Name);
}

}  // namespace tavro
