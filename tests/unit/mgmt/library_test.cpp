#include "mgmt/library.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "console/console.h"
#include "console/redirect.h"

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

// What had been written when the library was called.
std::string writtenBefore;
std::string written;

std::uint32_t Initialized(std::uint32_t debugFlag, std::wstring*) {
    writtenBefore = written;
    return debugFlag;
}

TEST_F(LibraryTest, IsCalledWhenAllThatWasPrintedIsWritten) {
    console::Device device;
    device.writeBytes = [](std::string_view bytes) {
        written += bytes;
        return true;
    };
    device.blockSize = 1000;
    const console::Redirect redirect(device);
    console::Print(L"line\nopen");
    std::wstring locale;
    EXPECT_EQ(CallLibrary(&Initialized, std::uint32_t{1}, &locale), 1U);
    EXPECT_EQ(writtenBefore, "line\nopen");
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
