// The system's conversion tables, below encoding.h; for its sources only.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tavro::platform {

// Encodes characters one by one in a code page other than UTF-8.
class CodePageEncoder {
  public:
    explicit CodePageEncoder(unsigned codePage);
    ~CodePageEncoder();
    CodePageEncoder(const CodePageEncoder&) = delete;
    CodePageEncoder& operator=(const CodePageEncoder&) = delete;
    CodePageEncoder(CodePageEncoder&&) = delete;
    CodePageEncoder& operator=(CodePageEncoder&&) = delete;

    // Appends the character's bytes and returns true; appends nothing and returns false when the
    // code page lacks it.
    bool Append(char32_t character, std::string& bytes);

  private:
    struct Tables;
    std::unique_ptr<Tables> tables_;
};

// DecodeText for code pages other than UTF-8.
std::optional<std::wstring> DecodeByTable(std::string_view bytes, unsigned codePage);

// DecodeText for UTF-8.
std::wstring DecodeUtf8(std::string_view bytes);

}  // namespace tavro::platform
