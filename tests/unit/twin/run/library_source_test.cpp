#include "twin/run/library_source.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "twin/platform/environment.h"
#include "twin/process/private_folder.h"

namespace tavrohost {
namespace {

template <class Entry>
typename Entry::Function* In(const tavro::LibrarySource& source) {
    return reinterpret_cast<typename Entry::Function*>(source.find(Entry::Name));
}

TEST(SourceOf, ATwinIsTheHostOfTheFileAndNothingElse) {
    const PrivateFolder folder;
    const std::filesystem::path file = folder.Path() / "twin.json";
    std::ofstream(file) << R"({"name": "the-twin", "adapters": []})";
    platform::SetVariable("TAVROSIM_HOST", folder.Path() / "other.json");
    platform::SetVariable("TAVROSIM_SCRIPT", folder.Path() / "missing script");
    platform::SetVariable("TAVROSIM_TRACE", folder.Path() / "trace");
    const tavro::LibrarySource source = SourceOf({LibraryChoice::Kind::Twin, file});
    EXPECT_EQ(source.failureReason, L"");
    std::wstring locale = L"C";
    ASSERT_EQ(In<tavroapi::InitializeEntry>(source)(0, &locale), 0U);
    std::string name;
    EXPECT_EQ(In<tavroapi::GetHostNameEntry>(source)(&name), 0U);
    EXPECT_EQ(name, "the-twin");
    EXPECT_EQ(In<tavroapi::UninitializeEntry>(source)(), 0U);
    EXPECT_FALSE(std::filesystem::exists(folder.Path() / "trace"));
    EXPECT_EQ(source.find("no entry point"), nullptr);
    platform::UnsetVariable("TAVROSIM_HOST");
}

TEST(SourceOf, AFileIsTheOnlyPlaceWhereItIsLookedFor) {
    const tavro::LibrarySource source =
        SourceOf({LibraryChoice::Kind::File, std::filesystem::path("/no such/library.dll")});
    EXPECT_NE(source.failureReason.find(L"library.dll: "), std::wstring::npos);
}

}  // namespace
}  // namespace tavrohost
