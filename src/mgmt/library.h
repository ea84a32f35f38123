#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "console/console.h"
#include "platform/shared_library.h"
#include "tavroapi/entry_points.h"

namespace tavro {

// Where the program finds the management library's entry points.
struct LibrarySource {
    // Why there is no library, as one line without its line end; empty when there is one.
    std::wstring failureReason;
    // The address of the entry point of that name; null when the library lacks it.
    std::function<void*(const char* name)> find;
};

// A library that was loaded from a file, or why it was not.
LibrarySource SourceOf(platform::SharedLibrary library);

// The management library in use, kept until the process ends. Unless UseLibrary has named one, it
// is loaded at the first call, by its name from the program's folder; nothing is reported at that
// moment.
const LibrarySource& ManagementLibrary();

// Puts a library in the place of the one in use, for every entry point that is looked up from then
// on.
void UseLibrary(LibrarySource source);

// Looks an entry point up by its name, anew at each call. Null when the library or that export is
// missing.
template <class Entry>
typename Entry::Function* ResolveEntryPoint() {
    return reinterpret_cast<typename Entry::Function*>(ManagementLibrary().find(Entry::Name));
}

// Calls an entry point, which must be there, when all that was printed is written: the call may
// take long, and the library may end the process. All entry points are called through this but the
// one that tells a message's text, which stands between any two lines.
template <class Function, class... Arguments>
std::uint32_t CallLibrary(Function* entry, Arguments... arguments) {
    console::Flush();
    return entry(arguments...);
}

}  // namespace tavro
