#include "library/platform/file.h"

#include <fcntl.h>
#include <string.h>  // NOLINT(modernize-deprecated-headers): explicit_bzero is not the standard's
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <system_error>
#include <thread>
#include <utility>

#include "library/platform/environment.h"
#include "library/platform/unguessable.h"
#include "library/text/text.h"

namespace tavrolib::platform {
namespace {

constexpr mode_t OwnerOnly = S_IRUSR | S_IWUSR;
constexpr int MostLinks = 40;
constexpr int NotAtAll = -1;

[[noreturn]] void Fail(const std::filesystem::path& path, const wchar_t* what, int error) {
    throw FileError(TextOf(path) + L": " + what + L": " +
                    WideFromUtf8(std::system_category().message(error)));
}

class Descriptor {
  public:
    explicit Descriptor(int value = -1) : value_(value) {}
    ~Descriptor() {
        if (value_ >= 0) {
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
    int Close() { return close(std::exchange(value_, -1)); }

  private:
    int value_;
};

int Open(const std::filesystem::path& path, int flags) {
    int descriptor = -1;
    do {
        descriptor = open(path.c_str(), flags | O_CLOEXEC, OwnerOnly);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

// What stands at the path, without opening it: nothing waits, and the other end of a pipe notices
// nothing.
Descriptor FindNode(const Descriptor& folder, const std::filesystem::path& path, int flags) {
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

[[noreturn]] void Refuse(const std::filesystem::path& path, const wchar_t* reason) {
    throw FileError(TextOf(path) + L": " + reason);
}

void WantRegular(const std::filesystem::path& path, const struct stat& status) {
    const mode_t mode = status.st_mode;
    if (!S_ISREG(mode)) {
        Refuse(path, S_ISDIR(mode)                    ? L"is a folder"
                     : S_ISFIFO(mode)                 ? L"is a pipe"
                     : S_ISSOCK(mode)                 ? L"is a socket"
                     : S_ISCHR(mode) || S_ISBLK(mode) ? L"is a device"
                                                      : L"is no regular file");
    }
}

void WantNotTooLarge(const std::filesystem::path& path, std::uintmax_t size) {
    if (size > LargestFile) {
        Refuse(path, L"is larger than 64 MiB");
    }
}

// Opens what a node of `FindNode` stands for. Waits for nobody, not for one who holds a lease on
// the file either.
Descriptor OpenNode(const Descriptor& node, int flags) {
    return Descriptor(
        Open("/proc/self/fd/" + std::to_string(node.Value()), flags | O_NONBLOCK | O_NOCTTY));
}

// The regular file at the path, through links unless the flags hold O_NOFOLLOW; not open when there
// is none. Where access is denied, it is opened with `otherwise`. Throws when it is of another
// kind, too large, or cannot be opened.
Descriptor OpenRegular(const std::filesystem::path& path, int flags, int otherwise = NotAtAll) {
    const Descriptor node = FindNode(Descriptor(AT_FDCWD), path, flags & O_NOFOLLOW);
    if (!node.IsOpen()) {
        if (errno == ENOENT) {
            return Descriptor();
        }
        Fail(path, L"cannot be opened", errno);
    }
    const struct stat status = StatusOf(node);
    WantRegular(path, status);
    WantNotTooLarge(path, static_cast<std::uintmax_t>(status.st_size));
    Descriptor file = OpenNode(node, flags & ~O_NOFOLLOW);
    if (!file.IsOpen() && errno == EACCES && otherwise != NotAtAll) {
        file = OpenNode(node, otherwise);
    }
    if (!file.IsOpen()) {
        Fail(path, L"cannot be opened", errno);
    }
    return file;
}

// The same for append, made when missing.
Descriptor OpenForAppend(const std::filesystem::path& path) {
    constexpr int ForAppend = O_WRONLY | O_APPEND;
    Descriptor file = OpenRegular(path, ForAppend);
    if (!file.IsOpen()) {
        file = Descriptor(Open(path, ForAppend | O_CREAT | O_NONBLOCK | O_NOCTTY));
        if (file.IsOpen()) {
            WantRegular(path, StatusOf(file));  // another program may have been faster
        }
    }
    return file;
}

// Gives a new file, which is the owner's alone so far, owner, group, mode and access list of the
// file `model`, where there is one. Where owner and group cannot be given, nobody gets more.
void MakeLike(const Descriptor& fresh, const std::filesystem::path& model) {
    struct stat wanted {};
    if (lstat(model.c_str(), &wanted) != 0 || !S_ISREG(wanted.st_mode)) {
        return;
    }
    constexpr uid_t Same = static_cast<uid_t>(-1);
    if (fchown(fresh.Value(), wanted.st_uid, wanted.st_gid) != 0 &&
        fchown(fresh.Value(), Same, wanted.st_gid) != 0) {
        return;
    }
    constexpr const char* AccessList = "system.posix_acl_access";
    const auto hasNone = [] { return errno == ENODATA || errno == ENOTSUP; };
    std::array<char, 4096> list{};
    const ssize_t length = lgetxattr(model.c_str(), AccessList, list.data(), list.size());
    if (length >= 0) {
        // The list brings the mode with it.
        fsetxattr(fresh.Value(), AccessList, list.data(), static_cast<std::size_t>(length), 0);
        return;
    }
    if (!hasNone()) {
        return;
    }
    // What the folder hands down to new files, the mode would put in force.
    if (fremovexattr(fresh.Value(), AccessList) == 0 || hasNone()) {
        fchmod(fresh.Value(), wanted.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO));
    }
}

// Empty when it cannot be read.
std::filesystem::path TargetOf(const Descriptor& link) {
    std::array<char, PATH_MAX> target{};
    const ssize_t length = readlinkat(link.Value(), "", target.data(), target.size());
    return std::string(target.data(), length < 0 ? 0 : static_cast<std::size_t>(length));
}

// Opens a regular file for append, made when missing; see Accept::OwnRegularFiles. Links are
// followed by hand: the link whose owner is asked is the very one whose target is taken.
Descriptor OpenOwnForAppend(std::filesystem::path path) {
    Descriptor folder(AT_FDCWD);
    for (int links = 0; links <= MostLinks; ++links) {
        if (path.has_parent_path()) {
            folder = FindNode(folder, path.parent_path(), O_DIRECTORY);
            path = path.filename();
        }
        Descriptor node = FindNode(folder, path, O_NOFOLLOW);
        if (!node.IsOpen() && errno == ENOENT) {
            constexpr int NewFile = O_WRONLY | O_APPEND | O_CREAT | O_EXCL | O_CLOEXEC;
            Descriptor made(openat(folder.Value(), path.c_str(), NewFile, OwnerOnly));
            if (made.IsOpen() || errno != EEXIST) {
                return made;
            }
            node = FindNode(folder, path, O_NOFOLLOW);  // another program was faster
        }
        const struct stat status = StatusOf(node);
        if (S_ISREG(status.st_mode)) {
            return OpenNode(node, O_WRONLY | O_APPEND);
        }
        if (!S_ISLNK(status.st_mode) || status.st_uid != geteuid()) {
            errno = EPERM;
            break;
        }
        path = TargetOf(node);
    }
    return Descriptor();
}

// The lock file, made when missing. Opened for writing where that is allowed, since a network file
// system may lock nothing else.
Descriptor OpenLock(const std::filesystem::path& path, const std::filesystem::path& guarded) {
    while (true) {
        Descriptor file = OpenRegular(path, O_RDWR | O_NOFOLLOW, O_RDONLY);
        if (file.IsOpen()) {
            return file;
        }
        file = Descriptor(Open(path, O_RDWR | O_CREAT | O_EXCL));
        if (file.IsOpen()) {
            MakeLike(file, guarded);
            return file;
        }
        if (errno != EEXIST) {
            Fail(path, L"cannot be opened", errno);
        }
    }
}

using Clock = std::chrono::steady_clock;

// Locks the whole file. Returns 0, EWOULDBLOCK when another still holds it at `end`, or the error.
int LockUntil(const Descriptor& file, Clock::time_point end) {
    while (flock(file.Value(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            return errno;
        }
        if (Clock::now() >= end) {
            return EWOULDBLOCK;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return 0;
}

// Keeps the others that append to the file away while it lives, where that can be had soon.
class Turn {
  public:
    explicit Turn(const Descriptor& file)
        : file_(file), isHeld_(LockUntil(file, Clock::now() + AppendPatience) == 0) {}
    ~Turn() {
        if (isHeld_) {
            flock(file_.Value(), LOCK_UN);
        }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    bool IsHeld() const { return isHeld_; }

  private:
    const Descriptor& file_;
    bool isHeld_;
};

// Takes from those who are not the user of this process what they may do with the file. Its owner
// could take that back.
void ShutOthersOut(const Descriptor& file, const std::filesystem::path& path) {
    const struct stat status = StatusOf(file);
    const mode_t mode = status.st_mode;
    if (status.st_uid != geteuid()) {
        Fail(path, L"cannot be kept from others", EPERM);
    }
    if ((mode & (S_IRWXG | S_IRWXO)) != 0 && fchmod(file.Value(), mode & S_IRWXU) != 0) {
        Fail(path, L"cannot be kept from others", errno);
    }
}

bool IsSame(const struct stat& one, const struct stat& other) {
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

// Writes from the start of `content`, and takes from it what was written. Returns 0 or the error.
int WriteAll(int descriptor, std::string_view& content) {
    while (!content.empty()) {
        const ssize_t written = write(descriptor, content.data(), content.size());
        if (written >= 0) {
            content.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

}  // namespace

std::optional<std::string> ReadWholeFile(const std::filesystem::path& path) {
    const Descriptor file = OpenRegular(path, O_RDONLY);
    if (!file.IsOpen()) {
        return std::nullopt;
    }
    // What is read may be a secret: it is in no other memory than the result's.
    constexpr std::size_t LeastRoom = 4096;
    std::string content(LeastRoom + static_cast<std::size_t>(StatusOf(file).st_size), '\0');
    std::size_t size = 0;
    while (true) {
        if (size == content.size()) {  // it has grown, or does not tell its size
            std::string larger(2 * size, '\0');
            content.copy(larger.data(), size);
            explicit_bzero(content.data(), content.size());
            content.swap(larger);
        }
        const ssize_t got = read(file.Value(), content.data() + size, content.size() - size);
        if (got > 0) {
            size += static_cast<std::size_t>(got);
            WantNotTooLarge(path, size);
        } else if (got == 0) {
            content.resize(size);
            return content;
        } else if (errno != EINTR) {
            Fail(path, L"cannot be read", errno);
        }
    }
}

std::filesystem::path WithoutLinks(std::filesystem::path path) {
    std::error_code error;
    for (int links = 0; links < MostLinks && std::filesystem::is_symlink(path, error); ++links) {
        std::filesystem::path target = std::filesystem::read_symlink(path, error);
        if (error) {
            break;
        }
        path = target.is_absolute() ? std::move(target) : path.parent_path() / target;
    }
    return path;
}

bool WriteToStream(const std::filesystem::path& path, std::string_view content) {
    const mode_t kind = StatusOf(FindNode(Descriptor(AT_FDCWD), path, 0)).st_mode;
    if (!S_ISCHR(kind) && !S_ISFIFO(kind)) {
        return false;
    }
    const Descriptor stream(Open(path, O_WRONLY | O_NOCTTY));
    if (!stream.IsOpen()) {
        Fail(path, L"cannot be opened", errno);
    }
    if ((StatusOf(stream).st_mode & S_IFMT) != (kind & S_IFMT)) {
        return false;  // another stands there by now
    }
    if (isatty(stream.Value()) == 1) {
        Refuse(path, L"is a terminal");
    }
    if (const int error = WriteAll(stream.Value(), content)) {
        Fail(path, L"cannot be written", error);
    }
    return true;
}

bool IsStandardOutput(const std::filesystem::path& path) {
    struct stat output {};
    const Descriptor node = FindNode(Descriptor(AT_FDCWD), path, 0);
    return node.IsOpen() && fstat(STDOUT_FILENO, &output) == 0 && IsSame(StatusOf(node), output);
}

std::filesystem::path FileToReplace(const std::filesystem::path& path) {
    const bool isLink = S_ISLNK(StatusOf(FindNode(Descriptor(AT_FDCWD), path, O_NOFOLLOW)).st_mode);
    Descriptor node = FindNode(Descriptor(AT_FDCWD), path, 0);
    if (!node.IsOpen() && errno == ENOENT) {
        if (!isLink) {
            return path;
        }
        // Only the system tells where such a link may lead, and only when it makes the file.
        node = Descriptor(Open(path, O_WRONLY | O_CREAT | O_NONBLOCK | O_NOCTTY));
    }
    if (!node.IsOpen()) {
        Fail(path, L"cannot be opened", errno);
    }
    WantRegular(path, StatusOf(node));
    if (!isLink) {
        return path;
    }
    std::error_code error;
    std::filesystem::path file =
        std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(node.Value()), error);
    if (!IsSame(StatusOf(FindNode(Descriptor(AT_FDCWD), file, O_NOFOLLOW)), StatusOf(node))) {
        Refuse(path, L"leads to a file without a name");
    }
    return file;
}

void ReplaceContent(const std::filesystem::path& path, std::string_view content, Readers readers) {
    const std::filesystem::path fresh = NewNameBeside(path);
    Descriptor file(Open(fresh, O_WRONLY | O_CREAT | O_EXCL));
    if (!file.IsOpen()) {
        Fail(fresh, L"cannot be created", errno);
    }
    const auto giveUp = [&fresh](const wchar_t* what, int error) {
        unlink(fresh.c_str());
        Fail(fresh, what, error);
    };
    if (const int error = WriteAll(file.Value(), content)) {
        giveUp(L"cannot be written", error);
    }
    if (readers == Readers::AsBefore) {
        MakeLike(file, path);
    }
    if (fsync(file.Value()) != 0 || file.Close() != 0) {
        giveUp(L"cannot be written", errno);
    }
    if (rename(fresh.c_str(), path.c_str()) != 0) {
        const int error = errno;
        unlink(fresh.c_str());
        Fail(path, L"cannot be replaced", error);
    }
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
    const Descriptor entry(Open(folder, O_RDONLY | O_DIRECTORY));
    if (entry.IsOpen()) {
        fsync(entry.Value());
    }
}

void MakeFolder(const std::filesystem::path& path) {
    std::error_code ignored;
    if (path.empty() || std::filesystem::is_directory(path, ignored)) {
        return;
    }
    MakeFolder(path.parent_path());
    if (mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        Fail(path, L"cannot be created", errno);
    }
}

struct FileLock::Handle {
    explicit Handle(Descriptor opened) : file(std::move(opened)) {}
    Descriptor file;
};

FileLock::FileLock(const std::filesystem::path& path, std::chrono::milliseconds patience,
                   const std::filesystem::path& guarded)
    : handle_(std::make_unique<Handle>(OpenLock(path, guarded))) {
    const int error = LockUntil(handle_->file, Clock::now() + patience);
    if (error == EWOULDBLOCK) {
        Refuse(path, L"is held by another program");
    }
    if (error != 0) {
        Fail(path, L"cannot be locked", error);
    }
}

FileLock::~FileLock() = default;

struct AppendFile::Handle {
    explicit Handle(Descriptor opened) : file(std::move(opened)) {}
    Descriptor file;
};

AppendFile::AppendFile(const std::filesystem::path& path, Accept accept, Readers readers)
    : handle_(std::make_unique<Handle>(accept == Accept::OwnRegularFiles ? OpenOwnForAppend(path)
                                                                         : OpenForAppend(path))) {
    if (!handle_->file.IsOpen()) {
        Fail(path, L"cannot be opened", errno);
    }
    if (readers == Readers::OwnerOnly) {
        ShutOthersOut(handle_->file, path);
    }
}

AppendFile::~AppendFile() = default;

void AppendFile::Append(std::string_view text) {
    const int file = handle_->file.Value();
    const Turn turn(handle_->file);
    const off_t before = StatusOf(handle_->file).st_size;
    std::string_view left = text;
    if (WriteAll(file, left) != 0 && turn.IsHeld()) {
        const off_t after = before + static_cast<off_t>(text.size() - left.size());
        if (after != before && StatusOf(handle_->file).st_size == after) {
            // Nothing is left to be done where this fails.
            [[maybe_unused]] const int result = ftruncate(file, before);
        }
    }
}

}  // namespace tavrolib::platform
