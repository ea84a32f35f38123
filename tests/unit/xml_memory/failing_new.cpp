#include "failing_new.h"

#include <cstdlib>
#include <new>

namespace {

bool limited = false;
std::size_t allocationsLeft = 0;

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

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}

namespace tavro::xml {

AllocationLimit::AllocationLimit(std::size_t count) {
    allocationsLeft = count;
    limited = true;
}

AllocationLimit::~AllocationLimit() {
    limited = false;
}

}  // namespace tavro::xml
