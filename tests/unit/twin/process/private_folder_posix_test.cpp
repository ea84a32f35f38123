#ifndef _WIN32

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "library/platform/file.h"
#include "twin/process/private_folder.h"

namespace tavrohost {
namespace {

TEST(PrivateFolder, OnlyItsOwnerCanEnter) {
    const PrivateFolder folder;
    EXPECT_EQ(std::filesystem::status(folder.Path()).permissions(),
              std::filesystem::perms::owner_all);
}

// Ends with 0 when a temporary folder that is none is told in our own words.
[[noreturn]] void UseNoFolder() {
    setenv("TMPDIR", "/dev/null", 1);
    try {
        const PrivateFolder folder;
    } catch (const tavrolib::platform::FileError& error) {
        std::exit(error.Text().find(L"TMPDIR") == std::wstring::npos ? 2 : 0);
    }
    std::exit(1);
}

TEST(PrivateFolder, ATemporaryFolderThatIsNoneIsTold) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(UseNoFolder(), testing::ExitedWithCode(0), "");
}

// Ends the test with what it expects when the signal acts before the folder is gone.
[[noreturn]] void BeInterruptedInside() {
    const std::filesystem::path temporary = std::filesystem::temp_directory_path() / "tavro signal";
    std::filesystem::remove_all(temporary);
    std::filesystem::create_directory(temporary);
    setenv("TMPDIR", temporary.c_str(), 1);
    std::signal(SIGTERM, SIG_DFL);
    {
        const PrivateFolder outer;
        const PrivateFolder inner;
        std::raise(SIGTERM);
    }
    std::exit(1);
}

TEST(PrivateFolder, ASignalWaitsUntilItIsGone) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(BeInterruptedInside(), testing::KilledBySignal(SIGTERM), "");
    const std::filesystem::path temporary = std::filesystem::temp_directory_path() / "tavro signal";
    EXPECT_TRUE(std::filesystem::is_empty(temporary));
    std::filesystem::remove(temporary);
}

}  // namespace
}  // namespace tavrohost

#endif
