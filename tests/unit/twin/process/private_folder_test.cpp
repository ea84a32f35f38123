#include "twin/process/private_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace tavrohost {
namespace {

TEST(PrivateFolder, IsThereAsLongAsTheObjectAndGoesWithItsContent) {
    std::filesystem::path path;
    {
        const PrivateFolder folder;
        path = folder.Path();
        EXPECT_TRUE(std::filesystem::is_directory(path));
        std::filesystem::create_directory(path / "further");
        std::ofstream(path / "further" / "file") << "text";
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(PrivateFolder, IsAnotherOneEachTime) {
    const PrivateFolder first;
    const PrivateFolder second;
    EXPECT_NE(first.Path(), second.Path());
}

}  // namespace
}  // namespace tavrohost
