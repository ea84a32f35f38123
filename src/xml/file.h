// Reading an XML document from a file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/file.h"
#include "xml/error.h"
#include "xml/node.h"

namespace tavro::xml {

// Reads the file and returns its document's top element, a handle that the caller releases (or lets
// go out of scope); on failure the empty node. `results` is set in both cases. A file of more than
// `mostBytes` is refused before it is read. Never throws. Documents are as ParseXmlText describes
// them.
XmlNode ParseXmlFile(const std::wstring& path, XmlResults& results,
                     std::uint64_t mostBytes = platform::AnySize) noexcept;

// The wide text that a file's bytes stand for, up to its first zero, so a file that was saved with
// the end of its text is read; nothing when the system cannot convert them. What the bytes hold
// behind the zero stays nowhere in the result.
//
// Bytes that look like UTF-16 are little-endian UTF-16: FF FE in front, or EF FF, is skipped, and
// a zero byte completes half a unit at the end. Other bytes are UTF-8 when the mark EF BB BF is in
// front, which is skipped, and else text in the system's default code page.
std::optional<std::wstring> DecodeXmlBytes(std::string_view bytes);

}  // namespace tavro::xml
