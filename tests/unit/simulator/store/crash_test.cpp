// What is left of a change to the host file that ends in the middle.
#include <gtest/gtest.h>

#include "library/platform/file.h"
#include "simulator/host/host_file.h"
#include "simulator/store/store.h"
#include "unit/library/support.h"

#ifdef __linux__
#include <csignal>
#endif

namespace tavrosim {
namespace {

namespace platform = tavrolib::platform;
using tavrolib::Done;
using tavrolib::Outcome;
using tavrolib::Status;
using tavrolib_test::Folder;
#ifdef __linux__
using tavrolib_test::FullDisk;
#endif

Outcome Rename(Host& host, std::string name) {
    host.name = std::move(name);
    return Done();
}

class CrashTest : public testing::Test {
  protected:
    CrashTest() { tavrolib_test::Write(File(), before_); }

    std::filesystem::path File() const { return folder_ / "host.json"; }
    Store NewStore() const { return Store({File(), false}); }
    std::vector<std::filesystem::path> NewFiles() const {
        return tavrolib_test::NewFilesIn(folder_ / "");
    }

    void ExpectTheOldHost() const { EXPECT_EQ(tavrolib_test::Read(File()), before_); }

    void ExpectTheLockIsFree() const {
        const platform::FileLock free(folder_ / "host.json.lock", std::chrono::milliseconds(0));
    }
    // The next program can change the host, and leaves nothing behind but the lock file.
    void Change(const std::string& name) const {
        const auto before = NewFiles();
        Store store = NewStore();
        ASSERT_TRUE(store.Change([&](Host& host) { return Rename(host, name); }).IsDone());
        EXPECT_EQ(HostFromText(tavrolib_test::Read(File())).name, name);
        EXPECT_EQ(NewFiles(), before);
    }

    Folder folder_;
    const std::string before_ = TextFromHost(DefaultHost());
};

// The new file cannot be renamed to the name of a folder.
TEST_F(CrashTest, ANewFileThatCannotBePutInPlaceIsRemoved) {
    std::filesystem::create_directories(folder_ / "other" / "full");
    EXPECT_THROW(platform::ReplaceContent(folder_ / "other", "text"), platform::FileError);
    EXPECT_TRUE(NewFiles().empty());
    EXPECT_TRUE(std::filesystem::exists(folder_ / "other" / "full"));
}

#ifdef __linux__

TEST_F(CrashTest, AFullDiskLeavesTheOldHost) {
    {
        const FullDisk full(4096);
        Store store = NewStore();
        const Outcome outcome = store.Change([](Host& host) { return Rename(host, "new"); });
        EXPECT_EQ(outcome.status, static_cast<std::uint32_t>(Status::HostNotWritten));
    }
    ExpectTheOldHost();
    EXPECT_TRUE(NewFiles().empty());
    Change("next");
}

TEST_F(CrashTest, AProgramKilledWithTheLockLeavesTheOldHost) {
    EXPECT_EXIT(NewStore().Change([](Host&) {
        std::raise(SIGKILL);
        return Done();
    }),
                testing::KilledBySignal(SIGKILL), "");
    ExpectTheOldHost();
    ExpectTheLockIsFree();
    Change("next");
}

TEST_F(CrashTest, AProgramKilledWhileItWritesLeavesTheOldHost) {
    EXPECT_EXIT(
        {
            const FullDisk full(4096);
            std::signal(SIGXFSZ, SIG_DFL);  // which kills at once
            NewStore().Change([](Host& host) { return Rename(host, "new"); });
        },
        testing::KilledBySignal(SIGXFSZ), "");
    ExpectTheOldHost();
    ASSERT_EQ(NewFiles().size(), 1U);
    EXPECT_EQ(tavrolib_test::Read(NewFiles().front()).size(), 4096U);
    EXPECT_TRUE(tavrolib_test::IsOwnersOnly(NewFiles().front()));
    ExpectTheLockIsFree();
    Change("next");
}

#endif

}  // namespace
}  // namespace tavrosim
