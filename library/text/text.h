#pragma once

#include <string>
#include <string_view>

// Conversions between the texts of the contract and UTF-8, which all the library's files are
// written in.
namespace tavrolib {

// The wide text of UTF-8 `text`; every byte that is not part of valid UTF-8 becomes U+FFFD.
std::wstring WideFromUtf8(std::string_view text);

// The UTF-8 form of a wide text; what is no character (an unpaired surrogate) becomes U+FFFD.
std::string Utf8FromWide(std::wstring_view text);

// Narrow texts are bytes of an unstated encoding. This makes valid UTF-8 of them and loses
// nothing: a byte that is not part of valid UTF-8 becomes the private-use character U+F700 + byte.
// The bytes of a character U+F780 to U+F7FF itself are treated so as well, so that the way back is
// unambiguous.
std::string Utf8FromBytes(std::string_view bytes);

// The way back: every character U+F780 to U+F7FF becomes its byte, all others stay as they are.
std::string BytesFromUtf8(std::string_view text);

// A narrow text as the caller gave it, in quotation marks, for messages.
std::wstring Quoted(std::string_view bytes);

}  // namespace tavrolib
