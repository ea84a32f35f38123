#pragma once

#include <string.h>  // NOLINT(modernize-deprecated-headers): explicit_bzero is not the standard's

#include <string>

namespace tavrolinux {

// Overwrites all the memory of a text that was a secret, and leaves it empty. A text that was moved
// from, or shortened, may still hold what its size does not show.
inline void Wipe(std::string& text) {
    text.resize(text.capacity());
    explicit_bzero(text.data(), text.size());
    text.clear();
}

// Wipes a text when the scope that holds it is left, by whatever way.
class WipeAtEnd {
  public:
    explicit WipeAtEnd(std::string& text) : text_(text) {}
    ~WipeAtEnd() { Wipe(text_); }
    WipeAtEnd(const WipeAtEnd&) = delete;
    WipeAtEnd& operator=(const WipeAtEnd&) = delete;

  private:
    std::string& text_;
};

}  // namespace tavrolinux
