#include "platform/shared_library.h"

#include <utility>

namespace tavro::platform {

SharedLibrary::SharedLibrary(void* handle, std::wstring failureReason)
    : handle_(handle), failureReason_(std::move(failureReason)) {}

SharedLibrary::SharedLibrary(SharedLibrary&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)),
      failureReason_(std::exchange(other.failureReason_, {})) {}

SharedLibrary& SharedLibrary::operator=(SharedLibrary&& other) noexcept {
    if (this != &other) {
        handle_ = std::exchange(other.handle_, nullptr);
        failureReason_ = std::exchange(other.failureReason_, {});
    }
    return *this;
}

}  // namespace tavro::platform
