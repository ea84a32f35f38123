// What only POSIX tells: the mode of a file.
#ifndef _WIN32

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>

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

}  // namespace
}  // namespace tavrohost

#endif
