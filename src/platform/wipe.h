// Removing secrets from memory.
#pragma once

#include <cstddef>

namespace tavro::platform {

// Overwrites the bytes with zeros in a way that the compiler does not remove.
void WipeBytes(void* bytes, std::size_t size) noexcept;

// Wipes the characters of a string that it does not own when the scope is left, by whatever way.
template <class String>
class WipeAtEnd {
  public:
    explicit WipeAtEnd(String& wipedString) : string_(wipedString) {}
    ~WipeAtEnd() {
        WipeBytes(string_.data(), string_.size() * sizeof(typename String::value_type));
    }
    WipeAtEnd(const WipeAtEnd&) = delete;
    WipeAtEnd& operator=(const WipeAtEnd&) = delete;

  private:
    String& string_;
};

}  // namespace tavro::platform
