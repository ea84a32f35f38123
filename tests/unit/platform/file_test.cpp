#include "platform/file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/encoding.h"

namespace tavro::platform {
namespace {

// A folder of its own for each test, removed afterwards.
class ReadWholeFileTest : public ::testing::Test {
  protected:
    ReadWholeFileTest()
        : folder(std::filesystem::temp_directory_path() /
                 (std::string("tavro_file_") +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name())) {
        std::filesystem::create_directories(folder);
    }
    ~ReadWholeFileTest() override {
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

TEST_F(ReadWholeFileTest, BytesComeUntranslated) {
    std::string bytes;
    for (int count = 0; count < 100000; ++count) {
        bytes += static_cast<char>(count % 256);
    }
    const FileContents contents = ReadWholeFile(Write(u8"data.bin", bytes));
    EXPECT_EQ(contents.status, FileReadStatus::Done);
    EXPECT_TRUE(contents.bytes == bytes);
}

TEST_F(ReadWholeFileTest, OneByte) {
    const FileContents contents = ReadWholeFile(Write(u8"one", "\x1A"));
    EXPECT_EQ(contents.status, FileReadStatus::Done);
    EXPECT_EQ(contents.bytes, "\x1A");
}

TEST_F(ReadWholeFileTest, NamesBeyondAsciiWork) {
    const FileContents contents = ReadWholeFile(Write(u8"\u8A2D\u5B9A.xml", "<a/>"));
    EXPECT_EQ(contents.status, FileReadStatus::Done);
    EXPECT_EQ(contents.bytes, "<a/>");
}

TEST_F(ReadWholeFileTest, AnEmptyFileIsTold) {
    EXPECT_EQ(ReadWholeFile(Write(u8"empty", "")).status, FileReadStatus::Empty);
}

TEST_F(ReadWholeFileTest, AMissingFileCannotBeOpened) {
    const FileContents contents = ReadWholeFile(PathOf(L"missing"));
    EXPECT_EQ(contents.status, FileReadStatus::CannotOpen);
    EXPECT_EQ(contents.bytes, "");
}

TEST_F(ReadWholeFileTest, AFolderCannotBeOpened) {
    EXPECT_EQ(ReadWholeFile(PathOf(L"")).status, FileReadStatus::CannotOpen);
}

}  // namespace
}  // namespace tavro::platform
