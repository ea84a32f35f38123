#include "platform/file.h"

#include <limits>
#include <new>
#include <stdexcept>

#include "platform/wipe.h"

namespace tavro::platform {

FileContents ReadWholeFile(const std::wstring& path, std::uint64_t most) {
    RegularFile file = RegularFile::OpenForReading(path);
    if (!file.IsOpen()) {
        return {FileReadStatus::CannotOpen, {}};
    }
    const std::optional<std::uint64_t> size = file.Size();
    if (!size || *size > std::numeric_limits<std::size_t>::max()) {
        return {FileReadStatus::ReadFailed, {}};
    }
    if (*size == 0) {
        return {FileReadStatus::Empty, {}};
    }
    if (*size > most) {
        return {FileReadStatus::TooLarge, {}};
    }
    FileContents contents{FileReadStatus::Done, {}};
    try {
        contents.bytes.resize(static_cast<std::size_t>(*size));
    } catch (const std::bad_alloc&) {
        return {FileReadStatus::ReadFailed, {}};
    } catch (const std::length_error&) {
        return {FileReadStatus::ReadFailed, {}};
    }
    for (std::size_t done = 0; done < contents.bytes.size();) {
        const std::size_t got =
            file.Read(contents.bytes.data() + done, contents.bytes.size() - done);
        if (got == 0) {
            WipeBytes(contents.bytes.data(), contents.bytes.size());
            return {FileReadStatus::ReadFailed, {}};
        }
        done += got;
    }
    return contents;
}

}  // namespace tavro::platform
