#include "platform/shared_library.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace tavro::platform {
namespace {

// A library that every system of its kind has, and a function in it.
struct KnownLibrary {
    const char* fileName;
    const char* symbol;
};

constexpr KnownLibrary KnownLibraries[] = {
    {"kernel32.dll", "GetTickCount"},
    {"libm.so.6", "cos"},
};

// The first known library that loads here; exactly one of them does.
std::pair<SharedLibrary, const char*> LoadKnownLibrary() {
    for (const KnownLibrary& known : KnownLibraries) {
        SharedLibrary library = SharedLibrary::Load(known.fileName);
        if (library.IsLoaded()) {
            return {std::move(library), known.symbol};
        }
    }
    return {};
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
    EXPECT_FALSE(library.FailureReason().empty());
    EXPECT_EQ(library.FailureReason().find_first_of(L"\r\n"), std::wstring::npos);
}

TEST(SharedLibrary, ResolvesWhatTheLibraryExports) {
    const auto [library, symbol] = LoadKnownLibrary();
    ASSERT_TRUE(library.IsLoaded());
    EXPECT_TRUE(library.FailureReason().empty());
    EXPECT_NE(library.Resolve(symbol), nullptr);
    EXPECT_NE(library.Resolve<void()>(symbol), nullptr);
    EXPECT_EQ(library.Resolve("Tavro_NoSuchSymbol"), nullptr);
}

TEST(SharedLibrary, MovingHandsOverTheLibrary) {
    auto [library, symbol] = LoadKnownLibrary();
    ASSERT_TRUE(library.IsLoaded());
    SharedLibrary second = std::move(library);
    EXPECT_TRUE(second.IsLoaded());
    EXPECT_FALSE(library.IsLoaded());
    SharedLibrary third;
    third = std::move(second);
    EXPECT_NE(third.Resolve(symbol), nullptr);
    EXPECT_EQ(second.Resolve(symbol), nullptr);
}

}  // namespace
}  // namespace tavro::platform
