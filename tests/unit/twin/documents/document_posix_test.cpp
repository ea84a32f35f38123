// What only POSIX tells: the mode of a file.
#ifndef _WIN32

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "twin/documents/document.h"
#include "twin/process/private_folder.h"

namespace tavrohost {
namespace {

TEST(WriteDocument, ADocumentIsItsOwnersWhoeverCouldReadTheOneBefore) {
    const PrivateFolder folder;
    const std::filesystem::path path = folder.Path() / "document";
    std::ofstream(path) << "old";
    ASSERT_EQ(chmod(path.c_str(), 0644), 0);
    WriteDocument(path.string(), "new");
    EXPECT_EQ(ReadDocument(path.string()), "new");
    struct stat status {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST(WriteDocument, APipeIsWrittenIntoAndStaysOne) {
    const PrivateFolder folder;
    const std::filesystem::path path = folder.Path() / "pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::string got;
    std::thread reader([&] { std::getline(std::ifstream(path), got); });
    WriteDocument(path.string(), "content\n");
    reader.join();
    EXPECT_EQ(got, "content");
    EXPECT_TRUE(std::filesystem::is_fifo(path));
}

TEST(WriteDocument, AFileThatIsLockedIsWaitedFor) {
    const PrivateFolder folder;
    const std::filesystem::path path = folder.Path() / "document";
    std::ofstream(path) << "old";
    std::filesystem::create_symlink("document", folder.Path() / "link");
    std::thread writer;
    {
        const LockedDocument document(path.string());
        writer = std::thread([&] { WriteDocument(folder.Path() / "link", "last"); });
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        EXPECT_EQ(ReadDocument(path.string()), "old");
        document.Replace("first");
        EXPECT_EQ(ReadDocument(path.string()), "first");
    }
    writer.join();
    EXPECT_EQ(ReadDocument(path.string()), "last");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.Path() / "link"));
}

}  // namespace
}  // namespace tavrohost

#endif
