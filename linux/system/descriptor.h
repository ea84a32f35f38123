#pragma once

#include <unistd.h>

#include <utility>

namespace tavrolinux {

// An open file descriptor, closed when it goes; none where the system gave -1.
class Descriptor {
  public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    ~Descriptor() {
        if (*this) {
            ::close(descriptor_);
        }
    }
    Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor& operator=(Descriptor&&) = delete;

    explicit operator bool() const { return descriptor_ >= 0; }
    int Get() const { return descriptor_; }

  private:
    int descriptor_;
};

}  // namespace tavrolinux
