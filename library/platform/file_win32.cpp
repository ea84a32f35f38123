#include "library/platform/file.h"

// windows.h must come before the other Windows headers.
#include <windows.h>

#include <sddl.h>

#include <array>
#include <thread>
#include <utility>
#include <vector>

#include "library/platform/environment.h"
#include "library/platform/unguessable.h"

namespace tavrolib::platform {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

// For how long a file is tried again that another program has open for the moment.
constexpr milliseconds SharingPatience{3000};
constexpr milliseconds Pause{2};

std::wstring SystemText(DWORD error) {
    std::array<wchar_t, 512> text{};
    DWORD length =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                       0, text.data(), static_cast<DWORD>(text.size()), nullptr);
    while (length > 0 &&
           (text[length - 1] == L'\n' || text[length - 1] == L'\r' || text[length - 1] == L' ')) {
        --length;
    }
    return length == 0 ? L"error " + std::to_wstring(error) : std::wstring(text.data(), length);
}

[[noreturn]] void Fail(const std::filesystem::path& path, const wchar_t* what, DWORD error) {
    throw FileError(TextOf(path) + L": " + what + L": " + SystemText(error));
}

class FileHandle {
  public:
    explicit FileHandle(HANDLE value) : value_(value) {}
    ~FileHandle() { Close(); }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    HANDLE Value() const { return value_; }
    bool IsOpen() const { return value_ != INVALID_HANDLE_VALUE; }
    bool Close() {
        return !IsOpen() || CloseHandle(std::exchange(value_, INVALID_HANDLE_VALUE)) != 0;
    }

  private:
    HANDLE value_;
};

bool MayPass(DWORD error) {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED ||
           error == ERROR_LOCK_VIOLATION;
}

// Repeats `attempt`, which returns 0 or the error, while another program is in the way.
template <class Attempt>
DWORD WithPatience(const Attempt& attempt) {
    const auto end = Clock::now() + SharingPatience;
    DWORD error = attempt();
    while (MayPass(error) && Clock::now() < end) {
        std::this_thread::sleep_for(Pause);
        error = attempt();
    }
    return error;
}

// Writes from the start of `content`, and takes from it what was written. Returns the error, if
// any.
DWORD WriteAll(HANDLE file, std::string_view& content) {
    while (!content.empty()) {
        const auto block =
            static_cast<DWORD>(content.size() < 0x100000 ? content.size() : 0x100000);
        DWORD written = 0;
        if (WriteFile(file, content.data(), block, &written, nullptr) == 0) {
            return GetLastError();
        }
        content.remove_prefix(written);
    }
    return ERROR_SUCCESS;
}

struct LocalMemory {
    LocalMemory() = default;
    ~LocalMemory() { LocalFree(pointer); }
    LocalMemory(const LocalMemory&) = delete;
    LocalMemory& operator=(const LocalMemory&) = delete;
    void* pointer = nullptr;
};

// The security identifier of the user that runs this process, as text; empty when it cannot be
// told.
std::wstring UserIdentifier() {
    HANDLE opened = nullptr;
    if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened) == 0) {
        return {};
    }
    const FileHandle token(opened);
    DWORD size = 0;
    GetTokenInformation(opened, TokenUser, nullptr, 0, &size);
    std::vector<unsigned char> buffer(size);
    if (size < sizeof(TOKEN_USER) ||
        GetTokenInformation(opened, TokenUser, buffer.data(), size, &size) == 0) {
        return {};
    }
    // The buffer comes from operator new and is aligned for any such structure.
    const auto* user = static_cast<const TOKEN_USER*>(static_cast<const void*>(buffer.data()));
    wchar_t* text = nullptr;
    if (ConvertSidToStringSidW(user->User.Sid, &text) == 0) {
        return {};
    }
    LocalMemory owned;
    owned.pointer = text;
    return text;
}

// An access list that inherits nothing and gives the user alone full access; contained folders and
// files get it too.
class OwnerOnly {
  public:
    OwnerOnly() {
        const std::wstring user = UserIdentifier();
        const std::wstring list = L"D:P(A;OICI;FA;;;" + (user.empty() ? L"OW" : user) + L")";
        if (ConvertStringSecurityDescriptorToSecurityDescriptorW(
                list.c_str(), SDDL_REVISION_1, &descriptor_.pointer, nullptr) != 0) {
            attributes_.lpSecurityDescriptor = descriptor_.pointer;
        }
        attributes_.nLength = sizeof attributes_;
    }
    bool IsValid() const { return attributes_.lpSecurityDescriptor != nullptr; }
    SECURITY_ATTRIBUTES* Attributes() { return &attributes_; }

  private:
    LocalMemory descriptor_;
    SECURITY_ATTRIBUTES attributes_{};
};

// Whether the handle, opened without following links, is of a file on a disk and no reparse point.
bool IsPlainFile(const FileHandle& file) {
    BY_HANDLE_FILE_INFORMATION information{};
    return GetFileType(file.Value()) == FILE_TYPE_DISK &&
           GetFileInformationByHandle(file.Value(), &information) != 0 &&
           (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
}

[[noreturn]] void Refuse(const std::filesystem::path& path, const wchar_t* reason) {
    throw FileError(TextOf(path) + L": " + reason);
}

// A folder cannot be opened as files are, and would be taken for a file that others have open.
void RefuseFolder(const std::filesystem::path& path) {
    const DWORD kind = GetFileAttributesW(path.c_str());
    if (kind != INVALID_FILE_ATTRIBUTES && (kind & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        Refuse(path, L"is a folder");
    }
}

void WantNotTooLarge(const std::filesystem::path& path, std::uintmax_t size) {
    if (size > LargestFile) {
        Refuse(path, L"is larger than 64 MiB");
    }
}

// Throws where an open file is none on a disk, or is too large.
void WantRegular(const std::filesystem::path& path, const FileHandle& file) {
    const DWORD kind = GetFileType(file.Value());
    if (kind != FILE_TYPE_DISK) {
        Refuse(path, kind == FILE_TYPE_PIPE ? L"is a pipe" : L"is a device");
    }
    LARGE_INTEGER size{};
    if (GetFileSizeEx(file.Value(), &size) != 0) {
        WantNotTooLarge(path, static_cast<std::uintmax_t>(size.QuadPart));
    }
}

// Gives a new file, which is the user's alone so far, the access list of the file `model` where
// there is one, and its owner and group where the user may do so.
void MakeLike(HANDLE fresh, const std::filesystem::path& model) {
    constexpr SECURITY_INFORMATION Owners = OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION;
    constexpr SECURITY_INFORMATION Everything = Owners | DACL_SECURITY_INFORMATION;
    DWORD size = 0;
    GetFileSecurityW(model.c_str(), Everything, nullptr, 0, &size);
    std::vector<unsigned char> descriptor(size);
    if (size == 0 ||
        GetFileSecurityW(model.c_str(), Everything, descriptor.data(), size, &size) == 0) {
        return;
    }
    SetKernelObjectSecurity(fresh, Owners, descriptor.data());
    SetKernelObjectSecurity(fresh, DACL_SECURITY_INFORMATION, descriptor.data());
}

// Throws where the handle, opened without following links, is no file to write to.
void WantPlain(const std::filesystem::path& path, const FileHandle& file) {
    if (!IsPlainFile(file)) {
        Refuse(path, L"is no regular file");
    }
}

// Where one byte of a file is locked.
OVERLAPPED At(std::uint64_t position) {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(position & 0xFFFFFFFF);
    place.OffsetHigh = static_cast<DWORD>(position >> 32);
    return place;
}

// Locks one byte. Returns 0, ERROR_LOCK_VIOLATION when another still holds it at `end`, or the
// error.
DWORD LockUntil(const FileHandle& file, std::uint64_t position, Clock::time_point end) {
    while (true) {
        OVERLAPPED place = At(position);
        if (LockFileEx(file.Value(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                       &place) != 0) {
            return ERROR_SUCCESS;
        }
        const DWORD error = GetLastError();
        const bool isHeld = error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING;
        if (!isHeld) {
            return error;
        }
        if (Clock::now() >= end) {
            return ERROR_LOCK_VIOLATION;
        }
        std::this_thread::sleep_for(Pause);
    }
}

void Unlock(const FileHandle& file, std::uint64_t position) {
    OVERLAPPED place = At(position);
    UnlockFileEx(file.Value(), 0, 1, 0, &place);
}

// What those that append to a file lock: a byte that no file reaches, since a locked byte can be
// neither read nor written.
constexpr std::uint64_t BehindAllFiles = std::uint64_t{1} << 62;

// Keeps the others that append to the file away while it lives, where that can be had soon.
class Turn {
  public:
    explicit Turn(const FileHandle& file)
        : file_(file),
          isHeld_(file.IsOpen() && LockUntil(file, BehindAllFiles, Clock::now() + AppendPatience) ==
                                       ERROR_SUCCESS) {}
    ~Turn() {
        if (isHeld_) {
            Unlock(file_, BehindAllFiles);
        }
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    bool IsHeld() const { return isHeld_; }

  private:
    const FileHandle& file_;
    bool isHeld_;
};

// Who serves a pipe in a file's place learns who opens it, and cannot act in that user's name.
constexpr DWORD NoImpersonation = SECURITY_SQOS_PRESENT | SECURITY_IDENTIFICATION;
constexpr DWORD MayChangeOwner = WRITE_DAC | WRITE_OWNER;
constexpr DWORD ShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

}  // namespace

std::optional<std::string> ReadWholeFile(const std::filesystem::path& path) {
    RefuseFolder(path);
    HANDLE opened = INVALID_HANDLE_VALUE;
    const DWORD error = WithPatience([&] {
        opened = CreateFileW(path.c_str(), GENERIC_READ, ShareAll, nullptr, OPEN_EXISTING,
                             NoImpersonation, nullptr);
        return opened == INVALID_HANDLE_VALUE ? GetLastError() : static_cast<DWORD>(ERROR_SUCCESS);
    });
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
        return std::nullopt;
    }
    if (error != ERROR_SUCCESS) {
        Fail(path, L"cannot be opened", error);
    }
    const FileHandle file(opened);
    WantRegular(path, file);
    std::string content;
    std::vector<char> block(65536);
    while (true) {
        DWORD got = 0;
        if (::ReadFile(file.Value(), block.data(), static_cast<DWORD>(block.size()), &got,
                       nullptr) == 0) {
            Fail(path, L"cannot be read", GetLastError());
        }
        if (got == 0) {
            return content;
        }
        content.append(block.data(), got);
        WantNotTooLarge(path, content.size());  // it may grow
    }
}

std::filesystem::path WithoutLinks(std::filesystem::path path) {
    const DWORD kind = GetFileAttributesW(path.c_str());
    if (kind == INVALID_FILE_ATTRIBUTES || (kind & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return path;
    }
    const FileHandle file(
        CreateFileW(path.c_str(), 0, ShareAll, nullptr, OPEN_EXISTING, NoImpersonation, nullptr));
    std::vector<wchar_t> name(32768);
    const DWORD length = file.IsOpen()
                             ? GetFinalPathNameByHandleW(file.Value(), name.data(),
                                                         static_cast<DWORD>(name.size()), 0)
                             : 0;
    return length == 0 || length >= name.size()
               ? path
               : std::filesystem::path(std::wstring(name.data(), length));
}

bool WriteToStream(const std::filesystem::path& path, std::string_view content) {
    const FileHandle stream(CreateFileW(path.c_str(), GENERIC_WRITE, ShareAll, nullptr,
                                        OPEN_EXISTING, NoImpersonation, nullptr));
    const DWORD kind = stream.IsOpen() ? GetFileType(stream.Value()) : FILE_TYPE_UNKNOWN;
    if (kind != FILE_TYPE_CHAR && kind != FILE_TYPE_PIPE) {
        return false;
    }
    DWORD mode = 0;
    if (GetConsoleMode(stream.Value(), &mode) != 0) {
        Refuse(path, L"is a terminal");
    }
    if (const DWORD error = WriteAll(stream.Value(), content)) {
        Fail(path, L"cannot be written", error);
    }
    return true;
}

bool IsStandardOutput(const std::filesystem::path& /*path*/) {
    return false;
}

std::filesystem::path FileToReplace(const std::filesystem::path& path) {
    RefuseFolder(path);
    return WithoutLinks(path);
}

void ReplaceContent(const std::filesystem::path& path, std::string_view content, Readers readers) {
    const std::filesystem::path fresh = NewNameBeside(path);
    OwnerOnly access;
    if (!access.IsValid()) {
        Fail(fresh, L"cannot be kept to its owner", GetLastError());
    }
    FileHandle file(CreateFileW(fresh.c_str(), GENERIC_WRITE | MayChangeOwner, 0,
                                access.Attributes(), CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.IsOpen()) {
        Fail(fresh, L"cannot be created", GetLastError());
    }
    const auto giveUp = [&](const std::filesystem::path& where, const wchar_t* what, DWORD error) {
        file.Close();
        DeleteFileW(fresh.c_str());
        Fail(where, what, error);
    };
    if (const DWORD error = WriteAll(file.Value(), content)) {
        giveUp(fresh, L"cannot be written", error);
    }
    if (readers == Readers::AsBefore) {
        MakeLike(file.Value(), path);
    }
    if (FlushFileBuffers(file.Value()) == 0 || !file.Close()) {
        giveUp(fresh, L"cannot be written", GetLastError());
    }
    const DWORD error = WithPatience([&] {
        return MoveFileExW(fresh.c_str(), path.c_str(),
                           MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0
                   ? static_cast<DWORD>(ERROR_SUCCESS)
                   : GetLastError();
    });
    if (error != ERROR_SUCCESS) {
        giveUp(path, L"cannot be replaced", error);
    }
}

void MakeFolder(const std::filesystem::path& path) {
    std::error_code ignored;
    if (path.empty() || path == path.root_path() || std::filesystem::is_directory(path, ignored)) {
        return;
    }
    MakeFolder(path.parent_path());
    OwnerOnly access;
    if (CreateDirectoryW(path.c_str(), access.IsValid() ? access.Attributes() : nullptr) == 0 &&
        GetLastError() != ERROR_ALREADY_EXISTS) {
        Fail(path, L"cannot be created", GetLastError());
    }
}

struct FileLock::Handle {
    explicit Handle(HANDLE opened) : file(opened) {}
    FileHandle file;
};

FileLock::FileLock(const std::filesystem::path& path, milliseconds patience,
                   const std::filesystem::path& guarded) {
    const auto end = Clock::now() + patience;
    RefuseFolder(path);
    HANDLE opened = INVALID_HANDLE_VALUE;
    const auto open = [&opened, &path](DWORD access, DWORD disposition, LPSECURITY_ATTRIBUTES own) {
        opened = CreateFileW(
            path.c_str(), GENERIC_READ | GENERIC_WRITE | access, ShareAll, own, disposition,
            FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT | NoImpersonation, nullptr);
        return opened == INVALID_HANDLE_VALUE ? GetLastError() : static_cast<DWORD>(ERROR_SUCCESS);
    };
    const DWORD error = WithPatience([&] {
        DWORD reason = open(0, OPEN_EXISTING, nullptr);
        if (reason == ERROR_FILE_NOT_FOUND) {
            OwnerOnly own;
            reason = open(MayChangeOwner, CREATE_NEW, own.IsValid() ? own.Attributes() : nullptr);
            if (reason == ERROR_SUCCESS) {
                MakeLike(opened, guarded);
            } else if (reason == ERROR_FILE_EXISTS) {
                reason = ERROR_SHARING_VIOLATION;  // another program was faster
            }
        }
        return reason;
    });
    if (error != ERROR_SUCCESS) {
        Fail(path, L"cannot be opened", error);
    }
    handle_ = std::make_unique<Handle>(opened);
    WantRegular(path, handle_->file);
    WantPlain(path, handle_->file);
    const DWORD reason = LockUntil(handle_->file, 0, end);
    if (reason == ERROR_LOCK_VIOLATION) {
        Refuse(path, L"is held by another program");
    }
    if (reason != ERROR_SUCCESS) {
        Fail(path, L"cannot be locked", reason);
    }
}

FileLock::~FileLock() {
    if (handle_) {
        Unlock(handle_->file, 0);
    }
}

struct AppendFile::Handle {
    explicit Handle(HANDLE opened) : file(opened) {}
    FileHandle file;
    std::optional<FileHandle> readable;  // a handle for appending cannot lock
};

AppendFile::AppendFile(const std::filesystem::path& path, Accept accept, Readers readers) {
    const bool followsLinks = accept == Accept::RegularFiles;
    const bool isOwners = readers == Readers::OwnerOnly;
    OwnerOnly access;
    if (followsLinks) {
        RefuseFolder(path);
    }
    handle_ = std::make_unique<Handle>(CreateFileW(
        path.c_str(), FILE_APPEND_DATA | FILE_READ_ATTRIBUTES | (isOwners ? WRITE_DAC : 0),
        ShareAll, access.IsValid() ? access.Attributes() : nullptr, OPEN_ALWAYS,
        FILE_ATTRIBUTE_NORMAL | NoImpersonation | (followsLinks ? 0 : FILE_FLAG_OPEN_REPARSE_POINT),
        nullptr));
    if (!handle_->file.IsOpen()) {
        Fail(path, L"cannot be opened", GetLastError());
    }
    if (followsLinks) {
        WantRegular(path, handle_->file);
    } else {
        WantPlain(path, handle_->file);
    }
    if (isOwners &&
        (!access.IsValid() ||
         SetKernelObjectSecurity(handle_->file.Value(),
                                 DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION,
                                 access.Attributes()->lpSecurityDescriptor) == 0)) {
        Fail(path, L"cannot be kept from others", GetLastError());
    }
    handle_->readable.emplace(ReOpenFile(handle_->file.Value(), GENERIC_READ, ShareAll, 0));
}

AppendFile::~AppendFile() = default;

void AppendFile::Append(std::string_view text) {
    const HANDLE file = handle_->file.Value();
    const Turn turn(*handle_->readable);
    LARGE_INTEGER before{};
    GetFileSizeEx(file, &before);
    std::string_view left = text;
    if (WriteAll(file, left) == ERROR_SUCCESS || left.size() == text.size() || !turn.IsHeld()) {
        return;
    }
    // A handle for appending cannot shorten the file.
    const FileHandle whole(ReOpenFile(file, GENERIC_WRITE, ShareAll, 0));
    LARGE_INTEGER after{};
    if (whole.IsOpen() && GetFileSizeEx(file, &after) != 0 &&
        static_cast<std::uintmax_t>(after.QuadPart - before.QuadPart) ==
            text.size() - left.size() &&
        SetFilePointerEx(whole.Value(), before, nullptr, FILE_BEGIN) != 0) {
        SetEndOfFile(whole.Value());
    }
}

}  // namespace tavrolib::platform
