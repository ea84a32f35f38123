#include <dlfcn.h>

#include "platform/encoding.h"
#include "platform/shared_library.h"

namespace tavro::platform {

SharedLibrary SharedLibrary::Load(const std::string& fileName) {
    SharedLibrary library;
    library.handle = dlopen(fileName.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library.handle == nullptr) {
        const char* reason = dlerror();
        library.failureReason =
            DecodeText(reason == nullptr ? "unknown reason" : reason, Utf8CodePage).value();
    }
    return library;
}

void* SharedLibrary::Resolve(const char* symbol) const {
    return handle == nullptr ? nullptr : dlsym(handle, symbol);
}

}  // namespace tavro::platform
