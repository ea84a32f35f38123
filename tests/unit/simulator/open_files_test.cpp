// The library's files are open while they are used and no longer, and no other program inherits
// them.
#include <gtest/gtest.h>

#include "library/session/session.h"
#include "unit/library/support.h"

#ifdef __linux__
#include <fcntl.h>
#include <sys/stat.h>
#endif

namespace tavrosim {
namespace {

namespace platform = tavrolib::platform;
using tavrolib::Session;
using tavrolib_test::EnglishLocale;
using tavrolib_test::Folder;
using tavrolib_test::IsOpen;
using tavrolib_test::Variable;

class OpenFilesTest : public testing::Test {
  protected:
    OpenFilesTest() : former_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder_ / "");
    }
    ~OpenFilesTest() override { std::filesystem::current_path(former_); }

    // A change that makes the host file.
    std::uint32_t AddIsnsServer() {
        std::string address = "192.0.2.99";
        const std::string function = "02-00-5E-10-00-02";
        return session_.DoOperation(23, &function, address.data(), nullptr);
    }

    Folder folder_;
    std::filesystem::path former_;
    Variable host_{"TAVROSIM_HOST", "host.json"};
    Variable script_{"TAVROSIM_SCRIPT", ""};
    Variable trace_{"TAVROSIM_TRACE", "trace"};
    Session session_;
};

TEST_F(OpenFilesTest, UninitializeClosesTheLogAndTheTrace) {
    session_.Initialize(1, &EnglishLocale);
    EXPECT_TRUE(IsOpen("trace"));
    EXPECT_TRUE(IsOpen("tavrocli.log"));
    session_.Uninitialize();
    EXPECT_FALSE(IsOpen("trace"));
    EXPECT_FALSE(IsOpen("tavrocli.log"));
    EXPECT_EQ(tavrolib_test::Lines("trace").size(), 2U);
    EXPECT_EQ(tavrolib_test::Lines("tavrocli.log").size(), 3U);
}

TEST_F(OpenFilesTest, ACallAfterTheEndIsTracedAllTheSame) {
    session_.Initialize(0, &EnglishLocale);
    session_.Uninitialize();
    EXPECT_NE(AddIsnsServer(), 0U);
    EXPECT_EQ(tavrolib_test::Lines("trace").size(), 3U);
}

TEST_F(OpenFilesTest, AChangeLeavesNeitherTheHostFileNorItsLockOpen) {
    session_.Initialize(0, &EnglishLocale);
    ASSERT_EQ(AddIsnsServer(), 0U);
    EXPECT_FALSE(IsOpen("host.json"));
    EXPECT_FALSE(IsOpen("host.json.lock"));
    EXPECT_TRUE(tavrolib_test::NewFilesIn(".").empty());
    const platform::FileLock lock("host.json.lock", std::chrono::milliseconds(0));
}

#ifdef __linux__
// On Windows no handle is inherited unless it is asked for.
TEST_F(OpenFilesTest, NoProgramInheritsThem) {
    session_.Initialize(1, &EnglishLocale);
    const platform::FileLock lock("host.json.lock", std::chrono::milliseconds(0));
    std::size_t count = 0;
    for (const char* name : {"trace", "tavrocli.log", "host.json.lock"}) {
        struct stat wanted {};
        ASSERT_EQ(stat(name, &wanted), 0);
        for (int descriptor = 0; descriptor < 1000; ++descriptor) {
            struct stat opened {};
            if (fstat(descriptor, &opened) == 0 && opened.st_ino == wanted.st_ino &&
                opened.st_dev == wanted.st_dev) {
                EXPECT_NE(fcntl(descriptor, F_GETFD) & FD_CLOEXEC, 0) << name;
                ++count;
            }
        }
    }
    EXPECT_EQ(count, 3U);
}
#endif

}  // namespace
}  // namespace tavrosim
