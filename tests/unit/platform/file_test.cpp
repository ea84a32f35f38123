#include "platform/file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/encoding.h"

namespace tavro::platform {
namespace {

// A folder of its own for each test, removed afterwards.
class FileTest : public ::testing::Test {
  protected:
    FileTest()
        : folder(std::filesystem::temp_directory_path() /
                 (std::string("tavro_file_") +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name())) {
        std::filesystem::create_directories(folder);
    }
    ~FileTest() override {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    // The wide path of a file in the folder, whose own path is ASCII.
    std::wstring PathOf(const std::wstring& name) const {
        const std::string path = folder.string();
        return std::wstring(path.begin(), path.end()) + L"/" + name;
    }

    std::wstring Write(const std::u8string& name, const std::string& bytes) {
        std::ofstream(folder / std::filesystem::path(name), std::ios::binary) << bytes;
        return PathOf(DecodeText(std::string(name.begin(), name.end()), Utf8CodePage).value());
    }

    std::filesystem::path folder;
};

// Several pieces, as it is read, and a part of one; each differs from the others.
TEST_F(FileTest, BytesComeUntranslated) {
    std::string bytes;
    for (int count = 0; count < 600000; ++count) {
        bytes += static_cast<char>(count % 257);
    }
    const FileContents contents = ReadWholeFile(Write(u8"data.bin", bytes));
    EXPECT_EQ(contents.status, FileReadStatus::Done);
    EXPECT_TRUE(contents.bytes == bytes);
}

TEST_F(FileTest, OneByte) {
    const FileContents contents = ReadWholeFile(Write(u8"one", "\x1A"));
    EXPECT_EQ(contents.status, FileReadStatus::Done);
    EXPECT_EQ(contents.bytes, "\x1A");
}

TEST_F(FileTest, NamesBeyondAsciiWork) {
    const FileContents contents = ReadWholeFile(Write(u8"\u8A2D\u5B9A.xml", "<a/>"));
    EXPECT_EQ(contents.status, FileReadStatus::Done);
    EXPECT_EQ(contents.bytes, "<a/>");
}

TEST_F(FileTest, AnEmptyFileIsTold) {
    EXPECT_EQ(ReadWholeFile(Write(u8"empty", "")).status, FileReadStatus::Empty);
}

TEST_F(FileTest, NothingIsReadOfAFileThatIsTooLarge) {
    const std::wstring path = Write(u8"five", "12345");
    EXPECT_EQ(ReadWholeFile(path, 5).bytes, "12345");
    const FileContents contents = ReadWholeFile(path, 4);
    EXPECT_EQ(contents.status, FileReadStatus::TooLarge);
    EXPECT_EQ(contents.bytes, "");
}

TEST_F(FileTest, AMissingFileCannotBeOpened) {
    const FileContents contents = ReadWholeFile(PathOf(L"missing"));
    EXPECT_EQ(contents.status, FileReadStatus::CannotOpen);
    EXPECT_EQ(contents.bytes, "");
}

TEST_F(FileTest, OnlyARegularFileCanBeOpened) {
    EXPECT_EQ(ReadWholeFile(PathOf(L"")).status, FileReadStatus::CannotOpen);
    EXPECT_FALSE(RegularFile::OpenForAppend(PathOf(L"")).IsOpen());
    // Each is a device on one system and missing on another.
    for (const wchar_t* const device : {L"/dev/null", L"NUL"}) {
        EXPECT_EQ(ReadWholeFile(device).status, FileReadStatus::CannotOpen);
    }
    EXPECT_FALSE(RegularFile::OpenForAppend(L"/dev/null").IsOpen());
}

TEST_F(FileTest, AppendingKeepsWhatIsThere) {
    const std::wstring path = Write(u8"log", "kept");
    EXPECT_TRUE(RegularFile::OpenForAppend(path).IsOpen());
    EXPECT_EQ(ReadWholeFile(path).bytes, "kept");
}

TEST_F(FileTest, AppendingMakesAMissingFile) {
    const std::wstring path = PathOf(L"log");
    {
        const RegularFile file = RegularFile::OpenForAppend(path);
        EXPECT_TRUE(file.IsOpen());
        EXPECT_EQ(file.Size(), 0U);
    }
    EXPECT_EQ(ReadWholeFile(path).status, FileReadStatus::Empty);
    EXPECT_FALSE(RegularFile::OpenForAppend(PathOf(L"missing/log")).IsOpen());
}

TEST_F(FileTest, OthersReadAndWriteAFileThatIsOpen) {
    const std::wstring path = PathOf(L"log");
    const RegularFile file = RegularFile::OpenForAppend(path);
    EXPECT_TRUE(RegularFile::OpenForAppend(path).IsOpen());
    Write(u8"log", "written meanwhile");
    EXPECT_EQ(ReadWholeFile(path).bytes, "written meanwhile");
}

}  // namespace
}  // namespace tavro::platform
