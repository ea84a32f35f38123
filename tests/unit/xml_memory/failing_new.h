// An operator new that fails when a test wants it to.
#pragma once

#include <cstddef>

namespace tavro::xml {

// While one lives, only so many allocations succeed. One at a time.
class AllocationLimit {
  public:
    explicit AllocationLimit(std::size_t count);
    ~AllocationLimit();
    AllocationLimit(const AllocationLimit&) = delete;
    AllocationLimit& operator=(const AllocationLimit&) = delete;
};

}  // namespace tavro::xml
