#include "twin/run/library_source.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tavroapi/iscsi_records.h"
#include "tavroapi/operation_code.h"
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

std::string ContentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(SourceOf, ATwinGetsNoSecretsButItsOwn) {
    const PrivateFolder folder;
    const std::filesystem::path file = folder.Path() / "twin.json";
    std::ofstream(file) << R"({"name": "the-twin", "adapters": [], "initiator": {
        "name": "iqn.2015-01.com.example:host", "login": {"targetSecret": "own-secret-of-it"}}})";
    const tavro::LibrarySource source = SourceOf({LibraryChoice::Kind::Twin, file});
    std::wstring locale = L"C";
    ASSERT_EQ(In<tavroapi::InitializeEntry>(source)(0, &locale), 0U);
    tavroapi::InitiatorRecord initiator;
    initiator.name = "iqn.2015-01.com.example:another";
    initiator.login.targetSecret = "own-secret-of-it";
    initiator.login.initiatorSecret = "a-secret-to-hide";
    std::string request;
    const auto code = static_cast<std::uint32_t>(tavroapi::OperationCode::SetInitiator);
    EXPECT_EQ(In<tavroapi::DoOperationEntry>(source)(code, &request, &initiator, nullptr), 0U);
    EXPECT_EQ(In<tavroapi::UninitializeEntry>(source)(), 0U);
    const std::string twin = ContentOf(file);
    EXPECT_NE(twin.find("iqn.2015-01.com.example:another"), std::string::npos);
    EXPECT_NE(twin.find("own-secret-of-it"), std::string::npos);
    EXPECT_EQ(twin.find("a-secret-to-hide"), std::string::npos);
    EXPECT_EQ(initiator.login.initiatorSecret, "(secret)");
    platform::UnsetVariable("TAVROSIM_HOST");
}

TEST(SourceOf, AFileIsTheOnlyPlaceWhereItIsLookedFor) {
    const tavro::LibrarySource source =
        SourceOf({LibraryChoice::Kind::File, std::filesystem::path("/no such/library.dll")});
    EXPECT_NE(source.failureReason.find(L"library.dll: "), std::wstring::npos);
}

}  // namespace
}  // namespace tavrohost
