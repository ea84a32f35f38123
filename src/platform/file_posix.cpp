#include "platform/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <string>
#include <utility>

#include "platform/encoding.h"

namespace tavro::platform {
namespace {

constexpr mode_t NewFileMode = 0666;
// As many links in a row as the system itself follows.
constexpr int MostLinks = 40;

class Descriptor {
  public:
    explicit Descriptor(int opened = -1) : value_(opened) {}
    ~Descriptor() {
        if (IsOpen()) {
            close(value_);
        }
    }
    Descriptor(Descriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Value() const { return value_; }
    bool IsOpen() const { return value_ >= 0; }

  private:
    int value_;
};

// What stands at the path, without opening it: nothing waits, and the other end of a pipe notices
// nothing.
Descriptor FindNode(const Descriptor& folder, const std::string& path, int flags) {
    return Descriptor(openat(folder.Value(), path.c_str(), O_PATH | O_CLOEXEC | flags));
}

// The node's kind and owner; all zero when there is no node.
struct stat StatusOf(const Descriptor& node) {
    struct stat status {};
    if (!node.IsOpen() || fstat(node.Value(), &status) != 0) {
        return {};
    }
    return status;
}

// Opens the node itself, whatever its name leads to by now, when it is a regular file. Waits for
// nobody, not for one who holds a lease on it either.
Descriptor OpenRegular(const Descriptor& node, int flags) {
    if (!S_ISREG(StatusOf(node).st_mode)) {
        return Descriptor();
    }
    const std::string path = "/proc/self/fd/" + std::to_string(node.Value());
    return Descriptor(open(path.c_str(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

// Empty when it cannot be read.
std::string TargetOf(const Descriptor& link) {
    std::array<char, PATH_MAX> target{};
    const ssize_t length = readlinkat(link.Value(), "", target.data(), target.size());
    return {target.data(), length < 0 ? 0 : static_cast<std::size_t>(length)};
}

// Follows links by hand: the link whose owner is asked is the very one whose target is taken.
Descriptor OpenOwnForAppend(std::string path) {
    Descriptor folder(AT_FDCWD);
    for (int links = 0; links <= MostLinks; ++links) {
        if (const std::size_t slash = path.rfind('/'); slash != std::string::npos) {
            folder = FindNode(folder, path.substr(0, slash + 1), O_DIRECTORY);
            path.erase(0, slash + 1);
        }
        Descriptor node = FindNode(folder, path, O_NOFOLLOW);
        if (!node.IsOpen() && errno == ENOENT) {
            constexpr int NewFile = O_WRONLY | O_APPEND | O_CREAT | O_EXCL | O_CLOEXEC;
            Descriptor made(openat(folder.Value(), path.c_str(), NewFile, NewFileMode));
            if (made.IsOpen() || errno != EEXIST) {
                return made;
            }
            node = FindNode(folder, path, O_NOFOLLOW);  // another program was faster
        }
        const struct stat status = StatusOf(node);
        if (!S_ISLNK(status.st_mode)) {
            return OpenRegular(node, O_WRONLY | O_APPEND);
        }
        if (status.st_uid != geteuid()) {
            break;
        }
        path = TargetOf(node);
    }
    return Descriptor();
}

}  // namespace

struct RegularFile::Handle {
    Descriptor file;
};

RegularFile::RegularFile() = default;
RegularFile::~RegularFile() = default;
RegularFile::RegularFile(RegularFile&& other) noexcept = default;
RegularFile& RegularFile::operator=(RegularFile&& other) noexcept = default;

RegularFile::RegularFile(Handle opened)
    : handle_(opened.file.IsOpen() ? std::make_unique<Handle>(std::move(opened)) : nullptr) {}

RegularFile RegularFile::OpenForReading(const std::wstring& path) {
    const Descriptor node = FindNode(Descriptor(AT_FDCWD), EncodeText(path, Utf8CodePage), 0);
    return RegularFile(Handle{OpenRegular(node, O_RDONLY)});
}

RegularFile RegularFile::OpenForAppend(const std::wstring& path) {
    return RegularFile(Handle{OpenOwnForAppend(EncodeText(path, Utf8CodePage))});
}

std::optional<std::uint64_t> RegularFile::Size() const {
    struct stat status {};
    if (fstat(handle_->file.Value(), &status) != 0) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(status.st_size);
}

std::size_t RegularFile::Read(char* bytes, std::size_t count) {
    ssize_t got = 0;
    do {
        got = read(handle_->file.Value(), bytes, count);
    } while (got < 0 && errno == EINTR);
    return got < 0 ? 0 : static_cast<std::size_t>(got);
}

}  // namespace tavro::platform
