// Removing secret texts from memory.
#pragma once

#include <string>

namespace tavro::console {

// Overwrites the text's whole storage, unused capacity included, with zeros and leaves it empty.
void WipeSecret(std::string& text) noexcept;

// Wipes a text that it does not own when the scope is left, by whatever way.
class SecretGuard {
  public:
    explicit SecretGuard(std::string& guardedText) : text_(guardedText) {}
    ~SecretGuard() { WipeSecret(text_); }
    SecretGuard(const SecretGuard&) = delete;
    SecretGuard& operator=(const SecretGuard&) = delete;
    SecretGuard(SecretGuard&&) = delete;
    SecretGuard& operator=(SecretGuard&&) = delete;

  private:
    std::string& text_;
};

}  // namespace tavro::console
