#include "linux/system/attribute.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>
#include <utility>

#include "linux/system/descriptor.h"
#include "linux/system/trimmed.h"

namespace tavrolinux {
namespace {

// Nothing where there is no such file, or it cannot be opened.
std::optional<CollectedBytes> CollectFile(const std::filesystem::path& file, std::size_t longest,
                                          std::size_t piece) {
    // Nothing but a regular file is one of the kernel's, and only that never makes its reader wait.
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        return std::nullopt;
    }
    const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!descriptor) {
        return std::nullopt;
    }
    return CollectBytes(
        [&descriptor](std::span<char> place) -> std::ptrdiff_t {
            return ::read(descriptor.Get(), place.data(), place.size());
        },
        longest, piece);
}

}  // namespace

CollectedBytes CollectBytes(const PieceReader& read, std::size_t longest, std::size_t piece) {
    CollectedBytes collected;
    std::string& bytes = collected.bytes;
    while (bytes.size() < longest) {
        const std::size_t size = bytes.size();
        bytes.resize(std::min(longest, size + piece));
        const std::ptrdiff_t got = read(std::span(bytes).subspan(size));
        bytes.resize(size + static_cast<std::size_t>(std::max<std::ptrdiff_t>(got, 0)));
        if (got <= 0) {
            collected.hasFailed = got < 0;
            break;
        }
    }
    return collected;
}

std::optional<std::string> ReadBytes(const std::filesystem::path& file, std::size_t longest) {
    constexpr std::size_t Page = 4096;
    auto collected = CollectFile(file, longest, Page);
    if (!collected || collected->hasFailed) {
        return std::nullopt;
    }
    return std::move(collected->bytes);
}

std::optional<std::string> ReadBytesBeforeFailure(const std::filesystem::path& file,
                                                  std::size_t longest) {
    constexpr std::size_t Piece = 128;
    auto collected = CollectFile(file, longest, Piece);
    if (!collected || (collected->hasFailed && collected->bytes.empty())) {
        return std::nullopt;
    }
    return std::move(collected->bytes);
}

std::string ReadAttribute(const std::filesystem::path& file) {
    return std::string(Trimmed(ReadBytes(file).value_or(std::string())));
}

std::optional<std::uint64_t> NumberFrom(std::string_view text) {
    const bool isHexadecimal = text.starts_with("0x");
    const char* const first = text.data() + (isHexadecimal ? 2 : 0);
    const char* const last = text.data() + text.size();
    std::uint64_t number = 0;
    const auto [stop, error] = std::from_chars(first, last, number, isHexadecimal ? 16 : 10);
    return error == std::errc() && stop == last ? std::optional(number) : std::nullopt;
}

std::optional<std::uint64_t> ReadNumber(const std::filesystem::path& file) {
    return NumberFrom(ReadAttribute(file));
}

std::vector<std::string> NamesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        names.push_back(entry->path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string LinkedName(const std::filesystem::path& link) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::read_symlink(link, error);
    return error ? std::string() : target.filename().string();
}

std::optional<std::filesystem::path> Resolved(const std::filesystem::path& link) {
    std::error_code error;
    std::filesystem::path target = std::filesystem::canonical(link, error);
    return error ? std::nullopt : std::optional(std::move(target));
}

}  // namespace tavrolinux
