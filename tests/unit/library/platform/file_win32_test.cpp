// What Windows has beyond other systems: pipes that stand nowhere on a disk, and locks on single
// bytes.
#ifdef _WIN32

#include <gtest/gtest.h>
// windows.h must come before the other Windows headers.
#include <windows.h>

#include <sddl.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "library/platform/file.h"
#include "unit/library/support.h"

namespace tavrolib::platform {
namespace {

using tavrolib_test::Folder;
using tavrolib_test::Read;
using tavrolib_test::Write;

// What taking a pipe for a file fails with; the pipe is made anew for it, since each taker uses one
// instance up.
std::wstring ReasonForAPipe(
    const std::function<void(const std::filesystem::path& path)>& takeForFile) {
    const std::filesystem::path path =
        LR"(\\.\pipe\tavro_test_)" + std::to_wstring(GetCurrentProcessId());
    const HANDLE pipe = CreateNamedPipeW(path.c_str(), PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE,
                                         PIPE_UNLIMITED_INSTANCES, 4096, 4096, 0, nullptr);
    EXPECT_NE(pipe, INVALID_HANDLE_VALUE);
    std::wstring reason;
    try {
        takeForFile(path);
    } catch (const FileError& error) {
        reason = error.Text().substr(path.wstring().size());
    }
    CloseHandle(pipe);
    return reason;
}

TEST(Win32FileTest, APipeIsRefused) {
    using Path = std::filesystem::path;
    EXPECT_EQ(ReasonForAPipe([](const Path& path) { ReadWholeFile(path); }), L": is a pipe");
    EXPECT_EQ(
        ReasonForAPipe([](const Path& path) { const AppendFile file(path, Accept::RegularFiles); }),
        L": is a pipe");
    EXPECT_EQ(ReasonForAPipe([](const Path& path) {
                  const FileLock lock(path, std::chrono::milliseconds(0));
              }),
              L": is a pipe");
}

TEST(Win32FileTest, ANewContentLeavesAFileOfALikelyNameAlone) {
    const Folder folder;
    Write(folder / "file.new", "the user's own");
    ReplaceContent(folder / "file", "new");
    EXPECT_EQ(Read(folder / "file.new"), "the user's own");
    EXPECT_EQ(tavrolib_test::NewFilesIn(folder / "").size(), 1U);
}

TEST(Win32FileTest, AStreamIsWrittenIntoAndAFileIsLeftAlone) {
    EXPECT_EQ(ReasonForAPipe([](const std::filesystem::path& path) {
                  EXPECT_TRUE(WriteToStream(path, "content"));
              }),
              L"");
    EXPECT_TRUE(WriteToStream("NUL", "content"));
    const Folder folder;
    Write(folder / "file", "old");
    EXPECT_FALSE(WriteToStream(folder / "file", "content"));
    EXPECT_FALSE(WriteToStream(folder / "none", "content"));
    EXPECT_EQ(Read(folder / "file"), "old");
}

// Who may do what with the file, as text.
std::wstring AccessListOf(const std::filesystem::path& path) {
    DWORD size = 0;
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<unsigned char> descriptor(size);
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), size, &size);
    wchar_t* text = nullptr;
    EXPECT_NE(ConvertSecurityDescriptorToStringSecurityDescriptorW(
                  descriptor.data(), SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr),
              0);
    const std::wstring list = text;
    LocalFree(text);
    return list;
}

TEST(Win32FileTest, ANewContentForItsOwnerKeepsNoAccessList) {
    constexpr const wchar_t* Everybody = L";;;WD)";
    const Folder folder;
    const auto path = folder / "file";
    Write(path, "old");
    void* list = nullptr;
    ASSERT_NE(ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:P(A;;FA;;;WD)",
                                                                   SDDL_REVISION_1, &list, nullptr),
              0);
    EXPECT_NE(SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, list), 0);
    LocalFree(list);
    ReplaceContent(path, "new");
    EXPECT_NE(AccessListOf(path).find(Everybody), std::wstring::npos);
    ReplaceContent(path, "newer", Readers::OwnerOnly);
    EXPECT_EQ(AccessListOf(path).find(Everybody), std::wstring::npos);
    EXPECT_EQ(Read(path), "newer");
}

TEST(Win32FileTest, AnAppendWaitsForItsTurnAndThenNoLonger) {
    const Folder folder;
    const auto path = folder / "file";
    AppendFile file(path, Accept::RegularFiles);
    const HANDLE other = CreateFileW(path.c_str(), GENERIC_READ,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                     nullptr, OPEN_EXISTING, 0, nullptr);
    OVERLAPPED place{};
    place.OffsetHigh = 0x40000000;
    ASSERT_NE(LockFileEx(other, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &place), 0);
    const auto start = std::chrono::steady_clock::now();
    file.Append("one\n");
    EXPECT_GE(std::chrono::steady_clock::now() - start, AppendPatience);
    EXPECT_EQ(Read(path), "one\n");
    CloseHandle(other);
}

}  // namespace
}  // namespace tavrolib::platform

#endif
