// What POSIX has beyond other systems: special files, owners, modes, and disks that are full in the
// middle of a line.
#ifdef __linux__

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <vector>

#include "library/platform/file.h"
#include "unit/library/support.h"

namespace tavrolib::platform {
namespace {

using tavrolib_test::Folder;
using tavrolib_test::FullDisk;
using tavrolib_test::IsOwnersOnly;
using tavrolib_test::NewFilesIn;
using tavrolib_test::Read;
using tavrolib_test::Write;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;

constexpr uid_t Nobody = 65534;
constexpr gid_t SomeGroup = 4711;
constexpr std::chrono::milliseconds AtOnce{0};
constexpr const char* AccessList = "system.posix_acl_access";

// An access list: two numbers of 16 bits and one of 32 for each entry. The owner and user 4711 may
// read, the group and others may not; the mask lets reading through.
constexpr std::array<std::uint32_t, 11> ReadersList{2,          0x00060001, 0xFFFFFFFF, 0x00040002,
                                                    SomeGroup,  0x00000004, 0xFFFFFFFF, 0x00040010,
                                                    0xFFFFFFFF, 0x00000020, 0xFFFFFFFF};

bool SetList(const std::filesystem::path& path, const char* name) {
    return setxattr(path.c_str(), name, ReadersList.data(), sizeof ReadersList, 0) == 0;
}

// As the bytes are stored; empty when the file has none.
std::vector<std::uint32_t> ListOf(const std::filesystem::path& path) {
    std::vector<std::uint32_t> list(64);
    const ssize_t length =
        getxattr(path.c_str(), AccessList, list.data(), list.size() * sizeof list[0]);
    list.resize(length < 0 ? 0 : static_cast<std::size_t>(length) / sizeof list[0]);
    return list;
}

struct stat StatusOfPath(const std::filesystem::path& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status;
}

mode_t ModeOf(const std::filesystem::path& path) {
    return StatusOfPath(path).st_mode & 07777;
}

std::wstring TextOfFailure(const std::function<void()>& action) {
    try {
        action();
        return {};
    } catch (const FileError& error) {
        return error.Text();
    }
}

// Works as another user while it lives; to be had by root only.
class AsNobody {
  public:
    AsNobody() { EXPECT_EQ(seteuid(Nobody), 0); }
    ~AsNobody() { EXPECT_EQ(seteuid(0), 0); }
    AsNobody(const AsNobody&) = delete;
    AsNobody& operator=(const AsNobody&) = delete;
};

class PosixFileTest : public testing::Test {
  protected:
    // A file of another user.
    std::filesystem::path ForeignFile(mode_t mode) {
        const auto path = folder_ / "foreign";
        Write(path, "old");
        EXPECT_EQ(chown(path.c_str(), Nobody, SomeGroup), 0);
        EXPECT_EQ(chmod(path.c_str(), mode), 0);
        return path;
    }

    // A file of root and the group, in a folder where everybody may put files.
    std::filesystem::path RootsFile(gid_t group, mode_t mode) {
        EXPECT_EQ(chmod((folder_ / "").c_str(), 0777), 0);
        const auto path = folder_ / "roots";
        Write(path, "old");
        EXPECT_EQ(chown(path.c_str(), 0, group), 0);
        EXPECT_EQ(chmod(path.c_str(), mode), 0);
        return path;
    }

    static void ExpectRefused(const std::filesystem::path& path, const std::wstring& reason) {
        const std::wstring text = path.wstring() + L": " + reason;
        EXPECT_EQ(TextOfFailure([&] { ReadWholeFile(path); }), text);
        EXPECT_EQ(TextOfFailure([&] { const AppendFile file(path, Accept::RegularFiles); }), text);
        EXPECT_EQ(TextOfFailure([&] { const FileLock lock(path, AtOnce); }), text);
    }

    Folder folder_;
};

// What only root can try out: files of other users, and being another user. They are a test of
// ctest by themselves, which scripts/lib/as_root makes root where the system lets it.
class RootFileTest : public PosixFileTest {
  protected:
    void SetUp() override {
        if (geteuid() != 0) {
            GTEST_SKIP() << "not run here: needs root, or a user namespace with other users";
        }
    }
};

TEST_F(PosixFileTest, APipeIsRefusedAndNobodyIsWaitedFor) {
    const auto path = folder_ / "pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    ExpectRefused(path, L"is a pipe");
    const int reader = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ExpectRefused(path, L"is a pipe");
    close(reader);
}

TEST_F(PosixFileTest, ADeviceIsRefused) {
    ExpectRefused("/dev/zero", L"is a device");
}

TEST_F(PosixFileTest, ASocketIsRefused) {
    const auto path = folder_ / "socket";
    const int opened = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.string().copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(opened, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ExpectRefused(path, L"is a socket");
    close(opened);
}

TEST_F(PosixFileTest, ALinkToItselfIsRefused) {
    const auto path = folder_ / "loop";
    std::filesystem::create_symlink("loop", path);
    const std::wstring text =
        path.wstring() + L": cannot be opened: Too many levels of symbolic links";
    EXPECT_EQ(TextOfFailure([&] { ReadWholeFile(path); }), text);
    EXPECT_EQ(TextOfFailure([&] { const AppendFile file(path, Accept::RegularFiles); }), text);
}

// Its status tells the size 0.
TEST_F(PosixFileTest, AFileThatDoesNotTellItsSizeIsRead) {
    EXPECT_NE(ReadWholeFile("/proc/self/status")->find("Uid:"), std::string::npos);
}

TEST_F(PosixFileTest, ALinkIsFollowedForAppendAndMakesTheFile) {
    std::filesystem::create_symlink("target", folder_ / "link");
    AppendFile(folder_ / "link", Accept::RegularFiles).Append("one\n");
    EXPECT_EQ(Read(folder_ / "target"), "one\n");
}

TEST_F(PosixFileTest, ANewContentLeavesAFileOfALikelyNameAlone) {
    Write(folder_ / "file.new", "the user's own");
    ReplaceContent(folder_ / "file", "new");
    EXPECT_EQ(Read(folder_ / "file.new"), "the user's own");
    EXPECT_EQ(NewFilesIn(folder_ / "").size(), 1U);
}

TEST_F(PosixFileTest, AStreamIsWrittenInto) {
    const auto path = folder_ / "pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int reader = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    EXPECT_TRUE(WriteToStream(path, "content"));
    std::array<char, 16> got{};
    EXPECT_EQ(read(reader, got.data(), got.size()), 7);
    EXPECT_STREQ(got.data(), "content");
    close(reader);
    EXPECT_TRUE(S_ISFIFO(StatusOfPath(path).st_mode));
    EXPECT_TRUE(WriteToStream("/dev/null", "content"));
    EXPECT_EQ(TextOfFailure([] { WriteToStream("/dev/full", "content"); }),
              L"/dev/full: cannot be written: No space left on device");
}

TEST_F(PosixFileTest, WhatIsNoStreamIsLeftAlone) {
    Write(folder_ / "file", "old");
    for (const auto& path : {folder_ / "file", folder_ / "none", folder_ / ""}) {
        EXPECT_FALSE(WriteToStream(path, "content")) << path;
    }
    EXPECT_EQ(Read(folder_ / "file"), "old");
    EXPECT_FALSE(std::filesystem::exists(folder_ / "none"));
}

TEST_F(PosixFileTest, ATerminalIsRefused) {
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(terminal, 0);
    ASSERT_EQ(grantpt(terminal), 0);
    ASSERT_EQ(unlockpt(terminal), 0);
    const std::filesystem::path path = ptsname(terminal);
    EXPECT_EQ(TextOfFailure([&] { WriteToStream(path, "content"); }),
              path.wstring() + L": is a terminal");
    close(terminal);
}

TEST_F(PosixFileTest, LinksLeadToTheFileThatIsReplaced) {
    Write(folder_ / "file", "old");
    std::filesystem::create_symlink("file", folder_ / "first");
    std::filesystem::create_symlink(folder_ / "first", folder_ / "second");
    EXPECT_EQ(FileToReplace(folder_ / "second"), std::filesystem::canonical(folder_ / "file"));
    EXPECT_EQ(FileToReplace(folder_ / "file"), folder_ / "file");
    EXPECT_EQ(FileToReplace(folder_ / "none"), folder_ / "none");
    std::filesystem::create_symlink("made", folder_ / "dangling");
    const auto made = FileToReplace(folder_ / "dangling");
    EXPECT_EQ(made, std::filesystem::canonical(folder_ / "made"));
    EXPECT_EQ(ModeOf(made), 0600U);
}

TEST_F(PosixFileTest, WhatIsNoFileIsNotReplaced) {
    EXPECT_EQ(TextOfFailure([&] { FileToReplace(folder_ / ""); }),
              (folder_ / "").wstring() + L": is a folder");
    EXPECT_EQ(TextOfFailure([] { FileToReplace("/dev/null"); }), L"/dev/null: is a device");
    std::filesystem::create_symlink("loop", folder_ / "loop");
    EXPECT_EQ(
        TextOfFailure([&] { FileToReplace(folder_ / "loop"); }),
        (folder_ / "loop").wstring() + L": cannot be opened: Too many levels of symbolic links");
}

// Whether the system follows such a link is its administrator's to say, so it is asked first.
TEST_F(RootFileTest, ALinkOfSomebodyElseInAFolderOfAllIsFollowedAsTheSystemDoes) {
    ASSERT_EQ(chmod((folder_ / "").c_str(), 01777), 0);
    Write(folder_ / "file", "old");
    for (const char* const target : {"file", "none"}) {
        const auto link = folder_ / "link";
        std::filesystem::create_symlink(target, link);
        ASSERT_EQ(lchown(link.c_str(), Nobody, SomeGroup), 0);
        const int opened = open(link.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        std::filesystem::remove(folder_ / "none");
        if (opened >= 0) {
            close(opened);
            EXPECT_EQ(std::filesystem::canonical(FileToReplace(link)),
                      std::filesystem::canonical(folder_ / "") / target);
        } else {
            EXPECT_EQ(TextOfFailure([&] { FileToReplace(link); }),
                      link.wstring() + L": cannot be opened: Permission denied");
            EXPECT_FALSE(std::filesystem::exists(folder_ / "none"));
        }
        std::filesystem::remove(link);
    }
}

TEST_F(PosixFileTest, ANewContentKeepsTheMode) {
    for (const mode_t mode : {0600U, 0640U, 0664U, 0644U, 0604U}) {
        const auto path = folder_ / "file";
        Write(path, "old");
        ASSERT_EQ(chmod(path.c_str(), mode), 0);
        ReplaceContent(path, "new");
        EXPECT_EQ(Read(path), "new");
        EXPECT_EQ(ModeOf(path), mode);
    }
}

TEST_F(PosixFileTest, ANewContentForItsOwnerKeepsNoMode) {
    const auto path = folder_ / "file";
    Write(path, "old");
    ASSERT_EQ(chmod(path.c_str(), 0664), 0);
    ReplaceContent(path, "new", Readers::OwnerOnly);
    EXPECT_EQ(Read(path), "new");
    EXPECT_EQ(ModeOf(path), 0600U);
}

TEST_F(PosixFileTest, ANewContentKeepsTheAccessList) {
    const auto path = folder_ / "file";
    Write(path, "old");
    if (!SetList(path, AccessList)) {
        GTEST_SKIP() << "not run here: needs a file system with access lists";
    }
    ReplaceContent(path, "new");
    EXPECT_THAT(ListOf(path), ElementsAreArray(ReadersList));
}

TEST_F(PosixFileTest, WhatTheFolderHandsDownGivesNobodyMore) {
    const auto path = folder_ / "file";
    Write(path, "old");
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    if (!SetList(folder_ / "", "system.posix_acl_default")) {
        GTEST_SKIP() << "not run here: needs a file system with access lists";
    }
    const auto handedDown = folder_ / "other";
    Write(handedDown, "");
    ASSERT_THAT(ListOf(handedDown), Not(IsEmpty()));
    ReplaceContent(path, "new");
    const auto lockPath = folder_ / "lock";
    { const FileLock lock(lockPath, AtOnce, path); }
    for (const auto& file : {path, lockPath}) {
        EXPECT_THAT(ListOf(file), IsEmpty()) << file;
        EXPECT_EQ(ModeOf(file), 0640U) << file;
    }
}

TEST_F(RootFileTest, WhatRootChangesStaysItsOwners) {
    const auto path = ForeignFile(0640);
    ReplaceContent(path, "new");
    const auto lockPath = folder_ / "lock";
    { const FileLock lock(lockPath, AtOnce, path); }
    for (const auto& file : {path, lockPath}) {
        EXPECT_EQ(StatusOfPath(file).st_uid, Nobody) << file;
        EXPECT_EQ(StatusOfPath(file).st_gid, SomeGroup) << file;
        EXPECT_EQ(ModeOf(file), 0640U) << file;
    }
}

TEST_F(PosixFileTest, ALockThatIsThereStaysAsItIs) {
    const auto path = folder_ / "lock";
    Write(path, "");
    ASSERT_EQ(chmod(path.c_str(), 0604), 0);
    Write(folder_ / "guarded", "");
    { const FileLock lock(path, AtOnce, folder_ / "guarded"); }
    EXPECT_EQ(ModeOf(path), 0604U);
}

TEST_F(RootFileTest, AnOwnerWhoMayNotWriteCanLockAgain) {
    const auto path = ForeignFile(0444);
    const auto lockPath = folder_ / "lock";
    { const FileLock lock(lockPath, AtOnce, path); }
    ASSERT_EQ(ModeOf(lockPath), 0444U);
    const AsNobody user;
    const FileLock lock(lockPath, AtOnce, path);
    EXPECT_EQ(TextOfFailure([&] { const FileLock second(lockPath, AtOnce, path); }),
              lockPath.wstring() + L": is held by another program");
}

TEST_F(RootFileTest, WhatCannotStayItsOwnersIsReadByNobodyElse) {
    const auto path = RootsFile(SomeGroup, 0644);
    {
        const AsNobody user;
        ReplaceContent(path, "new");
    }
    EXPECT_EQ(StatusOfPath(path).st_uid, Nobody);
    EXPECT_EQ(ModeOf(path), 0600U);
}

TEST_F(RootFileTest, WhatAGroupSharesStaysTheGroups) {
    const auto path = RootsFile(getegid(), 0660);
    {
        const AsNobody user;
        ReplaceContent(path, "new");
    }
    EXPECT_EQ(StatusOfPath(path).st_uid, Nobody);
    EXPECT_EQ(StatusOfPath(path).st_gid, getegid());
    EXPECT_EQ(ModeOf(path), 0660U);
}

TEST_F(RootFileTest, AFileThatCannotBeKeptFromOthersIsRefused) {
    const auto path = RootsFile(SomeGroup, 0666);
    const AsNobody user;
    const auto open = [&path](Readers readers) {
        return TextOfFailure([&] { const AppendFile file(path, Accept::RegularFiles, readers); });
    };
    EXPECT_EQ(open(Readers::AsBefore), L"");
    EXPECT_EQ(open(Readers::OwnerOnly),
              path.wstring() + L": cannot be kept from others: Operation not permitted");
}

// Who owns a file can give others what was taken from them.
TEST_F(RootFileTest, AFileOfSomebodyElseCannotBeKeptFromOthers) {
    for (const mode_t mode : {0600U, 0644U}) {
        const auto path = ForeignFile(mode);
        EXPECT_EQ(TextOfFailure([&] {
                      const AppendFile file(path, Accept::RegularFiles, Readers::OwnerOnly);
                  }),
                  path.wstring() + L": cannot be kept from others: Operation not permitted");
        EXPECT_EQ(ModeOf(path), mode);
    }
}

TEST_F(PosixFileTest, AFullDiskLeavesNoHalfLine) {
    const auto path = folder_ / "file";
    AppendFile file(path, Accept::RegularFiles);
    file.Append("0123456789\n");
    {
        const FullDisk full(16);
        file.Append("abcdefghij\n");
        EXPECT_EQ(Read(path), "0123456789\n");
        file.Append("four\n");
    }
    file.Append("more\n");
    EXPECT_EQ(Read(path), "0123456789\nfour\nmore\n");
}

// What stands at the end may be the line of whoever holds the lock.
TEST_F(PosixFileTest, NothingIsCutOffOutOfTurn) {
    const auto path = folder_ / "file";
    AppendFile file(path, Accept::RegularFiles);
    file.Append("0123456789\n");
    const int other = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    {
        const FullDisk full(16);
        file.Append("abcdefghij\n");
    }
    EXPECT_EQ(Read(path), "0123456789\nabcde");
    close(other);
}

}  // namespace
}  // namespace tavrolib::platform

#endif
