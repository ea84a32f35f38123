#include "platform/shared_library.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace tavro::platform
