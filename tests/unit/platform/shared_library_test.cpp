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

std::filesystem::path HelperFile() {
    const std::filesystem::path program = testing::internal::GetArgvs().front();
    return program.parent_path() / "helper.dll";
}

int AnswerOf(const std::filesystem::path& file) {
    const SharedLibrary library = SharedLibrary::LoadFrom(file);
    const auto answer = library.Resolve<int()>("HelperAnswer");
    return answer == nullptr ? 0 : answer();
}

TEST(SharedLibrary, IsLoadedFromAFileWhereverThatLies) {
    EXPECT_EQ(AnswerOf(HelperFile()), 42);
    EXPECT_EQ(AnswerOf(std::filesystem::relative(HelperFile())), 42);
}

TEST(SharedLibrary, AMissingFileIsToldWithItsPath) {
    const auto file = std::filesystem::temp_directory_path() / "no such library.dll";
    const SharedLibrary missing = SharedLibrary::LoadFrom(file);
    EXPECT_FALSE(missing.IsLoaded());
    EXPECT_NE(missing.FailureReason().find(file.wstring() + L": "), std::wstring::npos);
}

// A loaded file can be removed on POSIX alone.
#ifndef _WIN32
TEST(SharedLibrary, AFolderIsTakenByItsNameAndNotByWhatTheLoaderMakesOfIt) {
    const auto folder = std::filesystem::temp_directory_path() / "tavro $ORIGIN shared library";
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(HelperFile(), folder / "other name.so",
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(AnswerOf(folder / "other name.so"), 42);
    std::ofstream(folder / "none.dll") << "no library";
    EXPECT_FALSE(SharedLibrary::LoadFrom(folder / "none.dll").IsLoaded());
    std::filesystem::remove_all(folder);
}
#endif

}  // namespace
}  // namespace tavro::platform
