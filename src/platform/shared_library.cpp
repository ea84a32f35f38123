#include "platform/shared_library.h"

#include <utility>

namespace tavro::platform {

SharedLibrary::SharedLibrary(SharedLibrary&& other) noexcept
    : handle(std::exchange(other.handle, nullptr)),
      failureReason(std::exchange(other.failureReason, {})) {}

SharedLibrary& SharedLibrary::operator=(SharedLibrary&& other) noexcept {
    if (this != &other) {
        handle = std::exchange(other.handle, nullptr);
        failureReason = std::exchange(other.failureReason, {});
    }
    return *this;
}

}  // namespace tavro::platform
