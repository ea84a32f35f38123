// An operator new that fails when a test wants it to, and an operator delete that looks at what is
// given back.
#pragma once

#include <cstddef>
#include <string_view>

namespace tavro::xml {

// While one lives, only so many allocations succeed, and memory that is given back must not hold
// the secret. One at a time; the secret has to live as long.
class AllocationLimit {
  public:
    AllocationLimit(std::size_t count, std::wstring_view secret);
    ~AllocationLimit();
    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;

    // Whether memory of a known size was given back with the secret in it.
    bool SecretWasLeft() const;
};

}  // namespace tavro::xml
