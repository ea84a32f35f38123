#include "platform/file.h"

#include <filesystem>
#include <fstream>
#include <new>
#include <stdexcept>
#include <system_error>
#include <type_traits>

#include "platform/encoding.h"
#include "platform/wipe.h"

namespace tavro::platform {
namespace {

// The standard library's own conversion of a wide path depends on the locale where paths are bytes.
std::filesystem::path ToPath(const std::wstring& path) {
    if constexpr (std::is_same_v<std::filesystem::path::value_type, wchar_t>) {
        return std::filesystem::path(path);
    } else {
        return std::filesystem::path(EncodeText(path, Utf8CodePage));
    }
}

}  // namespace

FileContents ReadWholeFile(const std::wstring& path) {
    std::ifstream file;
    // No buffer of its own, in which pieces of the contents would stay behind.
    file.rdbuf()->pubsetbuf(nullptr, 0);
    const std::filesystem::path name = ToPath(path);
    std::error_code ignored;
    if (std::filesystem::is_directory(name, ignored)) {
        return {FileReadStatus::CannotOpen, {}};
    }
    file.open(name, std::ios::binary);
    if (!file.is_open()) {
        return {FileReadStatus::CannotOpen, {}};
    }
    const std::streamoff size = file.seekg(0, std::ios::end).tellg();
    if (size == 0) {
        return {FileReadStatus::Empty, {}};
    }
    if (size < 0) {
        return {FileReadStatus::ReadFailed, {}};
    }
    FileContents contents{FileReadStatus::Done, {}};
    try {
        contents.bytes.resize(static_cast<std::size_t>(size));
    } catch (const std::bad_alloc&) {
        return {FileReadStatus::ReadFailed, {}};
    } catch (const std::length_error&) {
        return {FileReadStatus::ReadFailed, {}};
    }
    if (!file.seekg(0).read(contents.bytes.data(), size)) {
        WipeBytes(contents.bytes.data(), contents.bytes.size());
        return {FileReadStatus::ReadFailed, {}};
    }
    return contents;
}

}  // namespace tavro::platform
