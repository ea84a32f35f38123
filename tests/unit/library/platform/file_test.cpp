#include "library/platform/file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "unit/library/support.h"

namespace tavrolib::platform {
namespace {

using tavrolib_test::Folder;
using tavrolib_test::IsOwnersOnly;
using tavrolib_test::Lines;
using tavrolib_test::Read;
using tavrolib_test::Write;

// What the file error says after the path; empty when there is none.
template <class Action>
std::wstring ReasonOf(const std::filesystem::path& path, const Action& action) {
    try {
        action();
        return {};
    } catch (const FileError& error) {
        const std::wstring start = path.wstring() + L": ";
        EXPECT_EQ(error.Text().substr(0, start.size()), start);
        return error.Text().substr(start.size());
    }
}

class FileTest : public testing::Test {
  protected:
    // Neither reading nor appending nor locking takes the file, for this reason.
    static void ExpectRefused(const std::filesystem::path& path, const std::wstring& reason) {
        EXPECT_EQ(ReasonOf(path, [&] { ReadWholeFile(path); }), reason);
        EXPECT_EQ(ReasonOf(path, [&] { const AppendFile file(path, Accept::RegularFiles); }),
                  reason);
        EXPECT_EQ(ReasonOf(path, [&] { const FileLock lock(path, std::chrono::milliseconds(0)); }),
                  reason);
    }

    Folder folder_;
};

TEST_F(FileTest, AFolderIsRefused) {
    std::filesystem::create_directory(folder_ / "folder");
    ExpectRefused(folder_ / "folder", L"is a folder");
}

TEST_F(FileTest, TooLargeAFileIsRefused) {
    Write(folder_ / "large", "");
    std::filesystem::resize_file(folder_ / "large", LargestFile + 1);
    ExpectRefused(folder_ / "large", L"is larger than 64 MiB");
    std::filesystem::resize_file(folder_ / "large", LargestFile);
    EXPECT_EQ(ReadWholeFile(folder_ / "large")->size(), LargestFile);
    const AppendFile file(folder_ / "large", Accept::RegularFiles);
}

TEST_F(FileTest, WhatIsAppendedToIsKeptFromOthersOnDemand) {
    const auto path = folder_ / "file";
    Write(path, "before\n");
    ASSERT_FALSE(IsOwnersOnly(path));
    AppendFile(path, Accept::RegularFiles).Append("one\n");
    EXPECT_FALSE(IsOwnersOnly(path));
    AppendFile(path, Accept::RegularFiles, Readers::OwnerOnly).Append("two\n");
    EXPECT_TRUE(IsOwnersOnly(path));
    EXPECT_EQ(Read(path), "before\none\ntwo\n");
}

TEST_F(FileTest, ManyAppendAtOnceAndNoLineIsLost) {
    constexpr int Count = 50;
    const auto path = folder_ / "file";
    const auto append = [&path](const std::string& line) {
        AppendFile file(path, Accept::RegularFiles);
        for (int i = 0; i < Count; ++i) {
            file.Append(line + "\n");
        }
    };
    std::thread other(append, "other");
    append("one");
    other.join();
    const auto lines = Lines(path);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "one"), Count);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "other"), Count);
    EXPECT_EQ(lines.size(), std::size_t{2 * Count});
}

TEST_F(FileTest, ANewFileIsTheOwnersWhoeverMayReadIt) {
    AppendFile(folder_ / "new", Accept::RegularFiles).Append("one\n");
    EXPECT_TRUE(IsOwnersOnly(folder_ / "new"));
}

}  // namespace
}  // namespace tavrolib::platform
