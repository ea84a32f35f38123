#include "platform/file.h"

#include <algorithm>
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
    std::string& bytes = contents.bytes;
    const auto wanted = static_cast<std::size_t>(*size);
    try {
        bytes.reserve(wanted);
    } catch (const std::bad_alloc&) {
        return {FileReadStatus::ReadFailed, {}};
    } catch (const std::length_error&) {
        return {FileReadStatus::ReadFailed, {}};
    }
    // A piece at a time, which is still in the processor's cache when it is read over.
    constexpr std::size_t Piece = 256U << 10U;
    for (std::size_t done = 0; done < wanted;) {
        bytes.resize(std::min(done + Piece, wanted));
        const std::size_t got = file.Read(bytes.data() + done, bytes.size() - done);
        if (got == 0) {
            WipeBytes(bytes.data(), bytes.size());
            return {FileReadStatus::ReadFailed, {}};
        }
        done += got;
    }
    return contents;
}

}  // namespace tavro::platform
