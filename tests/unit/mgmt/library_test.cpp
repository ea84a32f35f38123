#include "mgmt/library.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace tavro {
namespace {

std::uint32_t Uninitialized() {
    return 77;
}

// Puts the library back that was in use.
class LibraryTest : public testing::Test {
  protected:
    ~LibraryTest() override { UseLibrary(former_); }

  private:
    LibrarySource former_ = ManagementLibrary();
};

TEST_F(LibraryTest, IsOneThatLiesBesideTheProgramUnlessAnotherIsNamed) {
    // None lies there.
    EXPECT_NE(ManagementLibrary().failureReason.find(L"tavro.dll: "), std::wstring::npos);
    EXPECT_EQ(ResolveEntryPoint<tavroapi::UninitializeEntry>(), nullptr);
}

TEST_F(LibraryTest, IsLookedUpInTheOneInUseAtEachCall) {
    std::vector<std::string> names;
    UseLibrary({.failureReason = {}, .find = [&](const char* name) -> void* {
                    names.emplace_back(name);
                    return reinterpret_cast<void*>(&Uninitialized);
                }});
    auto* const entry = ResolveEntryPoint<tavroapi::UninitializeEntry>();
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry(), 77U);
    ResolveEntryPoint<tavroapi::UninitializeEntry>();
    const std::vector<std::string> expected(2, tavroapi::UninitializeEntry::Name);
    EXPECT_EQ(names, expected);
    UseLibrary({.failureReason = L"gone", .find = [](const char*) -> void* { return nullptr; }});
    EXPECT_EQ(ResolveEntryPoint<tavroapi::UninitializeEntry>(), nullptr);
}

TEST_F(LibraryTest, ASourceKeepsTheLibraryOfAFile) {
    const LibrarySource source = SourceOf(platform::SharedLibrary::Load("helper.dll"));
    EXPECT_TRUE(source.failureReason.empty());
    EXPECT_NE(source.find("HelperAnswer"), nullptr);
    EXPECT_EQ(source.find("NoSuchEntryPoint"), nullptr);
}

TEST_F(LibraryTest, ASourceTellsWhyThereIsNoLibrary) {
    const LibrarySource source = SourceOf(platform::SharedLibrary::Load("no_such_library.dll"));
    EXPECT_NE(source.failureReason.find(L"no_such_library.dll: "), std::wstring::npos);
    EXPECT_EQ(source.find("anything"), nullptr);
}

}  // namespace
}  // namespace tavro
