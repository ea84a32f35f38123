#pragma once

#include <string.h>  // NOLINT(modernize-deprecated-headers): explicit_bzero is not the standard's

#include <string>

namespace tavrolinux {

// Overwrites the characters of a text that was a secret, so that its memory holds it no more.
inline void Wipe(std::string& text) {
    explicit_bzero(text.data(), text.size());
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
