#include "failing_new.h"

#include <cstdlib>
#include <new>
#include <string_view>

namespace {

bool limited = false;
std::size_t allocationsLeft = 0;
std::wstring_view soughtSecret;
bool secretWasLeft = false;

}  // namespace

void* operator new(std::size_t size) {
    if (limited) {
        if (allocationsLeft == 0) {
            throw std::bad_alloc();
        }
        --allocationsLeft;
    }
    if (void* const memory = std::malloc(size == 0 ? 1 : size); memory != nullptr) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t size) noexcept {
    if (limited) {
        const std::wstring_view text(static_cast<const wchar_t*>(memory), size / sizeof(wchar_t));
        secretWasLeft = secretWasLeft || text.find(soughtSecret) != std::wstring_view::npos;
    }
    std::free(memory);
}

namespace tavro::xml {

AllocationLimit::AllocationLimit(std::size_t count, std::wstring_view secret) {
    allocationsLeft = count;
    soughtSecret = secret;
    secretWasLeft = false;
    limited = true;
}

AllocationLimit::~AllocationLimit() {
    limited = false;
}

bool AllocationLimit::SecretWasLeft() const {
    return secretWasLeft;
}

}  // namespace tavro::xml
