// Nothing of a damaged file reaches the error, the log or the trace: it may be a secret.
#include <gtest/gtest.h>

#include "library/session/session.h"
#include "unit/library/support.h"

namespace tavrosim {
namespace {

using tavrolib::Session;
using tavrolib_test::EnglishLocale;
using tavrolib_test::Folder;
using tavrolib_test::Variable;

const std::string Excerpt = "hunter2";

class DamagedFilesTest : public testing::Test {
  protected:
    DamagedFilesTest() : former_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder_ / "");
    }
    ~DamagedFilesTest() override { std::filesystem::current_path(former_); }

    // The details of the error with which Initialize fails.
    static std::wstring DetailsOfFailure() {
        Session session;
        EXPECT_NE(session.Initialize(1, &EnglishLocale), 0U);
        tavroapi::ErrorRecord error;
        session.GetLastErrorMessage(&error);
        session.Uninitialize();
        return error.details;
    }

    // The library fails with such a file, tells this of it, and nothing that stands in it.
    static void ExpectOnlyThePlace(const char* name, const std::string& content,
                                   const std::wstring& place) {
        tavrolib_test::Write(name, content);
        const std::wstring details = DetailsOfFailure();
        // Behind it stands what library it is.
        EXPECT_EQ(details.substr(0, details.find(L"; Simulator ")),
                  std::filesystem::path(name).wstring() + L": " + place);
        for (const char* record : {"trace", "tavrocli.log"}) {
            const std::string text = tavrolib_test::Read(record);
            EXPECT_NE(text.find(name), std::string::npos) << record;
            EXPECT_EQ(text.find(Excerpt), std::string::npos) << record << ": " << text;
            EXPECT_LT(text.size(), 20000U) << record;
        }
    }

    Folder folder_;
    std::filesystem::path former_;
    Variable host_{"TAVROSIM_HOST", "host.json"};
    Variable trace_{"TAVROSIM_TRACE", "trace"};
    Variable outputs_{"TAVROSIM_TRACE_OUTPUTS", "1"};
};

// A host whose only function has this MAC.
std::string HostOfMac(const std::string& mac) {
    return R"({"name": "h", "adapters": [{"name": "A", "number": 1, "type": "CNA", "partitionState": 1,)"
           R"("ports": [{"name": "Port 1", "functions": [{"number": 0, "mac": )" +
           mac + R"(, "ethernet": {"interface": "e"}}]}]}]})";
}

TEST_F(DamagedFilesTest, OfAHostFileOnlyThePlaceIsTold) {
    const std::string digits(1000000, '7');
    ExpectOnlyThePlace("host.json", "{\"name\": " + Excerpt, L"line 1, column 10: a syntax error");
    ExpectOnlyThePlace("host.json", "{\n\"name\": \"" + Excerpt,
                       L"line 2, column 17: the text ends too early");
    ExpectOnlyThePlace("host.json", "{\"" + Excerpt + "\": 1, \"" + Excerpt + "\": 2}",
                       L"line 1, column 24: this member stands twice in its object");
    ExpectOnlyThePlace("host.json", R"({"name": "h", "adapters": [], ")" + Excerpt + "\": 1}",
                       L"member 3 is unknown");
    ExpectOnlyThePlace("host.json", HostOfMac('"' + Excerpt + '"'),
                       L"adapters[0].ports[0].functions[0].mac: a MAC of 12 hexadecimal digits is "
                       L"wanted");
    ExpectOnlyThePlace("host.json", "{\"format\": " + digits + "}",
                       L"line 1, column 1000011: the number is too large");
    ExpectOnlyThePlace("host.json", "{\"format\": 77777777777}",
                       L"format: a whole number from 1 to 4294967295 is wanted");
}

TEST_F(DamagedFilesTest, OfAScriptOnlyThePlaceIsTold) {
    const Variable script("TAVROSIM_SCRIPT", "script.json");
    ExpectOnlyThePlace("script.json", "{\"answers\": " + Excerpt,
                       L"line 1, column 13: a syntax error");
    ExpectOnlyThePlace("script.json", "{\"" + Excerpt + "\": 1}", L"member 1 is unknown");
    ExpectOnlyThePlace("script.json", "{\"messages\": \"" + Excerpt + "\"}",
                       L"messages: \"numbers\" or \"words\" is wanted");
    ExpectOnlyThePlace("script.json", R"({"answers": [{"call": ")" + Excerpt + "\"}]}",
                       L"answers[0].call: there is no such entry point");
    ExpectOnlyThePlace(
        "script.json",
        R"({"answers": [{"call": "DoOperation", "error": {")" + Excerpt + "\": 1}}]}",
        L"answers[0].error: member 1 is unknown");
}

}  // namespace
}  // namespace tavrosim
