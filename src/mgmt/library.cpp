#include "mgmt/library.h"

namespace tavro {

namespace {

const platform::SharedLibrary Library = platform::SharedLibrary::Load(tavroapi::LibraryFileName);

}  // namespace

const platform::SharedLibrary& ManagementLibrary() {
    return Library;
}

}  // namespace tavro
