#include "platform/shared_library.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

namespace tavro::platform {
namespace {

// Lies beside this program.
SharedLibrary LoadHelper() {
    return SharedLibrary::Load("helper.dll");
}

TEST(SharedLibrary, OwnsNothingAtFirst) {
    const SharedLibrary library;
    EXPECT_FALSE(library.IsLoaded());
    EXPECT_EQ(library.Resolve("anything"), nullptr);
    EXPECT_TRUE(library.FailureReason().empty());
}

TEST(SharedLibrary, AMissingLibraryIsReportedInOneLine) {
    const SharedLibrary library = SharedLibrary::Load("tavro_no_such_library.dll");
    EXPECT_FALSE(library.IsLoaded());
    EXPECT_EQ(library.Resolve("anything"), nullptr);
    const std::wstring reason = library.FailureReason();
    const std::wstring name = L"tavro_no_such_library.dll: ";
    const std::size_t place = reason.find(name);
    ASSERT_NE(place, std::wstring::npos);
    EXPECT_GT(reason.size(), place + name.size());
    EXPECT_EQ(reason.find(L"tavro_no_such_library.dll", place + 1), std::wstring::npos);
    EXPECT_EQ(reason.find_first_of(L"\r\n"), std::wstring::npos);
}

TEST(SharedLibrary, ResolvesWhatTheLibraryExports) {
    const SharedLibrary library = LoadHelper();
    ASSERT_TRUE(library.IsLoaded());
    EXPECT_TRUE(library.FailureReason().empty());
    EXPECT_NE(library.Resolve("HelperAnswer"), nullptr);
    const auto answer = library.Resolve<int()>("HelperAnswer");
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    EXPECT_EQ(library.Resolve("Tavro_NoSuchSymbol"), nullptr);
}

TEST(SharedLibrary, MovingHandsOverTheLibrary) {
    SharedLibrary library = LoadHelper();
    ASSERT_TRUE(library.IsLoaded());
    SharedLibrary second = std::move(library);
    EXPECT_TRUE(second.IsLoaded());
    EXPECT_FALSE(library.IsLoaded());
    SharedLibrary third;
    third = std::move(second);
    EXPECT_NE(third.Resolve("HelperAnswer"), nullptr);
    EXPECT_EQ(second.Resolve("HelperAnswer"), nullptr);
}

// The file of the helper as somebody may name it.
class LibraryFile : public testing::Test {
  protected:
    LibraryFile() { std::filesystem::create_directories(folder_); }
    ~LibraryFile() override { std::filesystem::remove_all(folder_); }

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / "tavro $ORIGIN shared library";
};

TEST_F(LibraryFile, IsLoadedFromWhereItLies) {
    const auto file = folder_ / "other name.so";
    const std::filesystem::path program = testing::internal::GetArgvs().front();
    std::filesystem::copy_file(program.parent_path() / "helper.dll", file);
    const SharedLibrary library = SharedLibrary::LoadFrom(file);
    ASSERT_TRUE(library.IsLoaded());
    const auto answer = library.Resolve<int()>("HelperAnswer");
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
}

TEST_F(LibraryFile, ThatIsMissingOrNoLibraryIsToldWithItsPath) {
    const auto file = folder_ / "none.dll";
    const SharedLibrary missing = SharedLibrary::LoadFrom(file);
    EXPECT_FALSE(missing.IsLoaded());
    EXPECT_NE(missing.FailureReason().find(file.wstring() + L": "), std::wstring::npos);
    std::ofstream(file) << "no library";
    EXPECT_FALSE(SharedLibrary::LoadFrom(file).IsLoaded());
}

}  // namespace
}  // namespace tavro::platform
