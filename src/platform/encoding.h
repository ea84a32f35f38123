// Conversion between wide text (UTF-16 on Windows, UTF-32 elsewhere) and bytes of a code page.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace tavro::platform {

// The number of a unit of wide text (wchar_t is signed on some systems).
constexpr char32_t UnitValue(wchar_t unit) {
    return static_cast<char32_t>(static_cast<std::make_unsigned_t<wchar_t>>(unit));
}

inline constexpr unsigned Utf8CodePage = 65001;
// The system's default code page: ANSI on Windows, that of the process's locale elsewhere.
inline constexpr unsigned SystemCodePage = 0;

// The text as bytes of the code page (a Windows code page number). A character that the code page
// lacks, half a surrogate pair and a number that is no character become one '?' each. Where the
// system has no tables for the code page, every character beyond ASCII becomes '?'. Never fails.
std::string EncodeText(std::wstring_view text, unsigned codePage);

// The same, but nothing where EncodeText would put a '?' in the place of something else.
std::optional<std::string> EncodeExactly(std::wstring_view text, unsigned codePage);

// Appends what EncodeText makes of the text.
void AppendEncoded(std::wstring_view text, unsigned codePage, std::string& bytes);

// Whether all bytes are ASCII, which is the same in every code page and as characters of the bytes'
// numbers.
bool IsAscii(std::string_view bytes);

// The bytes as wide text. UTF-8: each malformed sequence becomes one U+FFFD, so it never fails.
// SystemCodePage: on Windows the conversion with precomposed characters; elsewhere by the locale
// that setlocale set: "C" and "POSIX" read each byte as the Latin-1 character of that number. In
// other code pages malformed bytes become U+FFFD or what the system puts in their place. Nothing
// when the system cannot convert (it has no such code page, or out of range). The bytes may hold
// secrets: the only copy that is left is the result.
std::optional<std::wstring> DecodeText(std::string_view bytes, unsigned codePage);

// Takes the first character off UTF-8 bytes, of which there must be some; or the malformed sequence
// that stands there, which is nothing.
std::optional<char32_t> TakeUtf8(std::string_view& bytes);

// Whether bytes read from a file look like little-endian UTF-16 text. On Windows that is the
// system's own test (IsTextUnicode), which refuses an odd number of bytes; elsewhere the mark FF
// FE, or a sample in which every other byte is zero often enough that it is text, where zeros at
// the end of all bytes do not count.
bool LooksLikeUtf16(std::string_view bytes);

}  // namespace tavro::platform
