#include <windows.h>

#include <algorithm>
#include <array>
#include <limits>

#include "platform/code_page.h"
#include "platform/encoding.h"

namespace tavro::platform {

struct CodePageEncoder::Tables {
    unsigned codePage;
};

CodePageEncoder::CodePageEncoder(unsigned codePage)
    : tables_(std::make_unique<Tables>(Tables{codePage})) {}

CodePageEncoder::~CodePageEncoder() = default;

bool CodePageEncoder::Append(char32_t character, std::string& bytes) {
    std::array<wchar_t, 2> units{};
    int unitCount = 1;
    if (character >= 0x10000) {
        units[0] = static_cast<wchar_t>(0xD800 + ((character - 0x10000) >> 10U));
        units[1] = static_cast<wchar_t>(0xDC00 + ((character - 0x10000) & 0x3FFU));
        unitCount = 2;
    } else {
        units[0] = static_cast<wchar_t>(character);
    }
    std::array<char, 16> encoded{};
    const auto convert = [&](DWORD flags, BOOL* usedDefault) {
        return WideCharToMultiByte(tables_->codePage, flags, units.data(), unitCount,
                                   encoded.data(), static_cast<int>(encoded.size()), nullptr,
                                   usedDefault);
    };
    BOOL usedDefault = FALSE;
    int length = convert(WC_NO_BEST_FIT_CHARS, &usedDefault);
    if (length == 0) {
        // Some code pages, GB 18030 among them, take neither the flag nor the question.
        length = convert(0, nullptr);
    }
    if (length <= 0 || usedDefault != FALSE) {
        return false;
    }
    bytes.append(encoded.data(), static_cast<std::size_t>(length));
    return true;
}

std::optional<std::wstring> DecodeByTable(std::string_view bytes, unsigned codePage) {
    if (bytes.empty()) {
        return std::wstring();
    }
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        return std::nullopt;
    }
    const int size = static_cast<int>(bytes.size());
    DWORD flags = MB_PRECOMPOSED;
    int length = MultiByteToWideChar(codePage, flags, bytes.data(), size, nullptr, 0);
    if (length == 0 && GetLastError() == ERROR_INVALID_FLAGS) {
        flags = 0;
        length = MultiByteToWideChar(codePage, flags, bytes.data(), size, nullptr, 0);
    }
    if (length <= 0) {
        return std::nullopt;
    }
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    if (MultiByteToWideChar(codePage, flags, bytes.data(), size, text.data(), length) != length) {
        return std::nullopt;
    }
    return text;
}

bool LooksLikeUtf16(std::string_view bytes) {
    const auto size = std::min<std::size_t>(bytes.size(), std::numeric_limits<int>::max());
    return IsTextUnicode(bytes.data(), static_cast<int>(size), nullptr) != 0;
}

}  // namespace tavro::platform
