#include "xml/file.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include "platform/encoding.h"
#include "platform/wipe.h"
#include "xml/parser.h"

namespace tavro::xml {
namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
// The second is no byte-order mark of any encoding; files that begin with it are known to be read.
constexpr std::string_view SkippedBeforeUtf16[] = {"\xFF\xFE", "\xEF\xFF"};

// A zero completes half a unit at the end.
std::wstring DecodeUtf16(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size() / 2 + 1);
    const auto byteAt = [bytes](std::size_t index) {
        return index < bytes.size()
                   ? static_cast<char32_t>(static_cast<unsigned char>(bytes[index]))
                   : char32_t{0};
    };
    for (std::size_t index = 0; index < bytes.size(); index += 2) {
        const char32_t unit = byteAt(index) | (byteAt(index + 1) << 8U);
        if constexpr (sizeof(wchar_t) > 2) {
            if (unit >= 0xDC00 && unit <= 0xDFFF && !text.empty() && text.back() >= 0xD800 &&
                text.back() <= 0xDBFF) {
                const auto high = static_cast<char32_t>(text.back());
                text.back() =
                    static_cast<wchar_t>(0x10000 + ((high - 0xD800) << 10U) + (unit - 0xDC00));
                continue;
            }
        }
        text += static_cast<wchar_t>(unit);
    }
    return text;
}

std::optional<std::wstring> DecodeWhole(std::string_view bytes) {
    if (platform::LooksLikeUtf16(bytes)) {
        for (const std::string_view skipped : SkippedBeforeUtf16) {
            if (bytes.starts_with(skipped)) {
                bytes.remove_prefix(skipped.size());
                break;
            }
        }
        return DecodeUtf16(bytes);
    }
    if (bytes.starts_with(Utf8Mark)) {
        return platform::DecodeText(bytes.substr(Utf8Mark.size()), platform::Utf8CodePage);
    }
    return platform::DecodeText(bytes, platform::SystemCodePage);
}

// The text ends before its first zero; what follows may be secret and does not stay in memory.
void EndAtFirstZero(std::wstring& text) {
    const std::size_t end = std::min(text.find(L'\0'), text.size());
    platform::WipeBytes(text.data() + end, (text.size() - end) * sizeof(wchar_t));
    text.resize(end);
}

XmlNode Refuse(XmlResults& results, XmlError error) {
    results = {static_cast<std::uint32_t>(error), 0, 0};
    return {};
}

// The text of the file; nothing after an error. The bytes are wiped on every way out.
std::optional<std::wstring> ReadText(const std::wstring& path, std::uint64_t mostBytes,
                                     XmlError& error) {
    platform::FileContents file = platform::ReadWholeFile(path, mostBytes);
    const platform::WipeAtEnd guard(file.bytes);
    switch (file.status) {
        case platform::FileReadStatus::CannotOpen:
            error = XmlError::FileNotOpened;
            return std::nullopt;
        case platform::FileReadStatus::Empty:
            error = XmlError::EmptyFile;
            return std::nullopt;
        case platform::FileReadStatus::TooLarge:
            error = XmlError::FileTooLarge;
            return std::nullopt;
        case platform::FileReadStatus::ReadFailed:
            error = XmlError::FileNotRead;
            return std::nullopt;
        case platform::FileReadStatus::Done:
            break;
    }
    error = XmlError::ConversionFailed;
    return DecodeXmlBytes(file.bytes);
}

}  // namespace

std::optional<std::wstring> DecodeXmlBytes(std::string_view bytes) {
    std::optional<std::wstring> text = DecodeWhole(bytes);
    // In no encoding is there a zero without a byte that is zero, and bytes are searched faster.
    if (text && bytes.find('\0') != std::string_view::npos) {
        EndAtFirstZero(*text);
    }
    return text;
}

XmlNode ParseXmlFile(const std::wstring& path, XmlResults& results,
                     std::uint64_t mostBytes) noexcept {
    try {
        XmlError error = XmlError::None;
        std::optional<std::wstring> text = ReadText(path, mostBytes, error);
        if (!text) {
            return Refuse(results, error);
        }
        return ParseXmlText(std::move(*text), results);
    } catch (const std::bad_alloc&) {
        return Refuse(results, XmlError::OutOfMemory);
    } catch (const std::length_error&) {
        return Refuse(results, XmlError::OutOfMemory);
    }
}

}  // namespace tavro::xml
