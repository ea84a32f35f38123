#include "library/session/session.h"

#include <gtest/gtest.h>

#include <optional>

#include "library/session/version.h"
#include "unit/library/support.h"

namespace tavrosim {
namespace {

using tavrolib::FindMessage;
using tavrolib::Language;
using tavrolib::Session;
using tavrolib_test::EnglishLocale;
using tavrolib_test::Folder;
using tavrolib_test::Variable;

constexpr std::uint32_t ReadAdapterState = 70;

// A session whose host file, script and trace lie in a folder of the test's own, which is the
// current one.
class SessionTest : public testing::Test {
  protected:
    SessionTest() : former_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder_ / "");
    }
    ~SessionTest() override { std::filesystem::current_path(former_); }

    static void WriteScript(std::string_view content) { tavrolib_test::Write("script", content); }

    tavroapi::ErrorRecord LastError() {
        tavroapi::ErrorRecord error;
        EXPECT_EQ(session_.GetLastErrorMessage(&error), 0U);
        return error;
    }

    Folder folder_;
    std::filesystem::path former_;
    Variable host_{"TAVROSIM_HOST", "host.json"};
    Variable script_{"TAVROSIM_SCRIPT", ""};
    Variable trace_{"TAVROSIM_TRACE", ""};
    Session session_;
};

// What one run of a listing gets from the library, as text.
std::string Listing(Session& session) {
    std::string text = std::to_string(session.Initialize(0, &EnglishLocale));
    std::string hostName;
    text += std::to_string(session.GetHostName(&hostName)) + hostName;
    std::list<tavroapi::AdapterRecord> adapters;
    text += std::to_string(session.GetDiscoveredAdapters(&adapters));
    for (const auto& adapter : adapters) {
        text += '\n' + adapter.name;
        for (const std::string& port : adapter.portNames) {
            std::list<tavroapi::FunctionAddress> addresses;
            std::list<tavroapi::FunctionIdentity> identities;
            text +=
                std::to_string(session.GetPortWWNs(&adapter.name, &port, &addresses, &identities));
            EXPECT_EQ(addresses.size(), identities.size());
            for (const auto& address : addresses) {
                text += ' ' + address.keyText + ' ' + address.addressText + ' ' +
                        std::to_string(address.functionNumber);
            }
            for (const auto& identity : identities) {
                text += ' ' + identity.keyText + ' ' + std::to_string(identity.functionType) + ' ' +
                        identity.secondText;
            }
        }
    }
    const std::string key = "02-00-5E-10-00-00";
    const std::string unknown = "02-00-5E-99-99-99";
    std::wstring state = L"untouched";
    text += std::to_string(session.DoOperation(ReadAdapterState, &key, nullptr, &state));
    text += std::string(state.begin(), state.end());
    std::uint32_t number = 7;
    text += ' ' + std::to_string(session.GetPartitionState(&key, &number)) + std::to_string(number);
    text +=
        ' ' + std::to_string(session.GetAdapterPortNumber(&key, &number)) + std::to_string(number);
    std::string type;
    text += ' ' + std::to_string(session.GetAdapterType(&key, &type)) + type;
    text += ' ' + std::to_string(session.GetAdapterType(&unknown, &type)) + type;
    tavroapi::ErrorRecord error;
    session.GetLastErrorMessage(&error);
    text +=
        ' ' + std::to_string(error.code) + std::string(error.message.begin(), error.message.end());
    return text + ' ' + std::to_string(session.Uninitialize());
}

TEST_F(SessionTest, ModelTellsTheDefaultHost) {
    ASSERT_EQ(session_.Initialize(0, &EnglishLocale), 0U);
    const std::string adapter = "Tavro CNA 4610K";
    const std::string port = "Port 1";
    std::list<tavroapi::FunctionAddress> addresses{{"old", "old", 99}};
    std::list<tavroapi::FunctionIdentity> identities;
    ASSERT_EQ(session_.GetPortWWNs(&adapter, &port, &addresses, &identities), 0U);
    ASSERT_EQ(addresses.size(), 3U);
    EXPECT_EQ(addresses.back().keyText, "10:00:02:00:5E:10:00:04");
    EXPECT_EQ(addresses.back().addressText, "02-00-5E-10-00-04");
    EXPECT_EQ(addresses.back().functionNumber, 4U);
    EXPECT_EQ(identities.back().keyText, "10:00:02:00:5E:10:00:04");
    EXPECT_EQ(identities.back().functionType, 1U);
    EXPECT_EQ(identities.back().secondText, "20:00:02:00:5E:10:00:04");
    const std::string fourPorts = "02:00:5e:20:00:06";
    std::uint32_t count = 0;
    EXPECT_EQ(session_.GetAdapterPortNumber(&fourPorts, &count), 0U);
    EXPECT_EQ(count, 4U);
    std::uint32_t state = 0;
    EXPECT_EQ(session_.GetPartitionState(&fourPorts, &state), 0U);
    EXPECT_EQ(state, 3U);
}

TEST_F(SessionTest, UnknownThingsAreRefusedWithAReason) {
    ASSERT_EQ(session_.Initialize(0, &EnglishLocale), 0U);
    const std::string unknown = "02-00-5E-99-99-99";
    std::wstring state;
    EXPECT_NE(session_.DoOperation(ReadAdapterState, &unknown, nullptr, &state), 0U);
    EXPECT_EQ(LastError().message, L"No function of this host has this identifier.");
    EXPECT_EQ(LastError().details, L"MAC or port WWN \"02-00-5E-99-99-99\"");
    EXPECT_FALSE(LastError().action.empty());
    EXPECT_NE(session_.DoOperation(12345, &unknown, nullptr, nullptr), 0U);
    EXPECT_EQ(LastError().details, L"operation 12345");
    const std::string adapter = "Tavro CNA 4610K";
    const std::string port = "Port 9";
    std::list<tavroapi::FunctionAddress> addresses;
    std::list<tavroapi::FunctionIdentity> identities;
    EXPECT_NE(session_.GetPortWWNs(&adapter, &port, &addresses, &identities), 0U);
    EXPECT_EQ(LastError().message, L"The adapter has no port of this name.");
    EXPECT_EQ(LastError().details, L"adapter \"Tavro CNA 4610K\", port \"Port 9\"");
}

TEST_F(SessionTest, WithoutInitializeTheModelRefuses) {
    std::string name;
    EXPECT_NE(session_.GetHostName(&name), 0U);
    EXPECT_NE(session_.Uninitialize(), 0U);
    ASSERT_EQ(session_.Initialize(0, &EnglishLocale), 0U);
    EXPECT_EQ(session_.GetHostName(&name), 0U);
    EXPECT_EQ(session_.Uninitialize(), 0U);
    EXPECT_NE(session_.GetHostName(&name), 0U);
}

TEST_F(SessionTest, LastErrorStaysAndIsEmptyAtFirst) {
    EXPECT_EQ(LastError().code, 0U);
    EXPECT_TRUE(LastError().message.empty());
    std::string name;
    const std::uint32_t status = session_.GetHostName(&name);
    ASSERT_EQ(session_.Initialize(0, &EnglishLocale), 0U);
    EXPECT_EQ(session_.GetHostName(&name), 0U);
    EXPECT_EQ(LastError().code, status);
}

TEST_F(SessionTest, MessagesFollowTheLanguage) {
    std::wstring text;
    EXPECT_EQ(session_.GetLocalizeMessage(24840, &text), 0U);
    EXPECT_EQ(text, FindMessage(Language::English, 24840));
    const std::wstring japanese = L"ja_JP.UTF-8";
    ASSERT_EQ(session_.Initialize(0, &japanese), 0U);
    EXPECT_EQ(session_.GetLocalizeMessage(24840, &text), 0U);
    EXPECT_EQ(text, FindMessage(Language::Japanese, 24840));
    EXPECT_NE(session_.GetLocalizeMessage(1, &text), 0U);
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(LastError().code, 0U);
}

TEST_F(SessionTest, MessagesAreNumbersEvenBeforeInitialize) {
    WriteScript(R"({"messages": "numbers"})");
    const Variable script("TAVROSIM_SCRIPT", "script");
    std::wstring text;
    EXPECT_EQ(session_.GetLocalizeMessage(28676, &text), 0U);
    EXPECT_EQ(text, L"#28676");
    EXPECT_EQ(session_.GetLocalizeMessage(1, &text), 0U);
    EXPECT_EQ(text, L"#1");
}

TEST_F(SessionTest, WithoutTheModelCallsSucceedAndTouchNothing) {
    WriteScript(
        R"({"model": false, "answers": [{"call": "GetAdapterType", "request": "m", "status": 3,
                                                  "output": "CNA"}]})");
    const Variable script("TAVROSIM_SCRIPT", "script");
    const Variable broken("TAVROSIM_HOST", ".");
    EXPECT_EQ(session_.Initialize(0, &EnglishLocale), 0U);
    std::string text = "untouched";
    EXPECT_EQ(session_.GetHostName(&text), 0U);
    EXPECT_EQ(text, "untouched");
    const std::string mac = "m";
    EXPECT_EQ(session_.GetAdapterType(&mac, &text), 3U);
    EXPECT_EQ(text, "CNA");
    EXPECT_EQ(session_.Uninitialize(), 0U);
}

TEST_F(SessionTest, ScriptsErrorLastsUntilAnotherReplacesIt) {
    WriteScript(R"({"model": false, "answers": [
        {"call": "GetHostName", "status": 1, "error": {"message": "first"}, "times": 1},
        {"call": "GetHostName", "status": 2, "times": 1},
        {"call": "GetHostName", "error": {"message": "second"}}]})");
    const Variable script("TAVROSIM_SCRIPT", "script");
    ASSERT_EQ(session_.Initialize(0, &EnglishLocale), 0U);
    EXPECT_EQ(session_.GetHostName(nullptr), 1U);
    EXPECT_EQ(LastError().message, L"first");
    EXPECT_EQ(session_.GetHostName(nullptr), 2U);
    EXPECT_EQ(LastError().message, L"first");
    EXPECT_EQ(session_.GetHostName(nullptr), 0U);
    EXPECT_EQ(LastError().message, L"second");
}

TEST_F(SessionTest, AnswersComeBeforeTheModel) {
    WriteScript(R"({"answers": [{"call": "Initialize"},
                                {"call": "DoOperation", "operation": 70, "output": "6"}]})");
    const Variable script("TAVROSIM_SCRIPT", "script");
    ASSERT_EQ(session_.Initialize(0, &EnglishLocale), 0U);
    const std::string key = "02-00-5E-10-00-00";
    std::wstring state;
    EXPECT_EQ(session_.DoOperation(ReadAdapterState, &key, nullptr, &state), 0U);
    EXPECT_EQ(state, L"6");
    std::string name;
    EXPECT_EQ(session_.GetHostName(&name), 0U);
    EXPECT_EQ(name, "demo-host");
}

TEST_F(SessionTest, UnusableFilesFailInitializeWithTheirPlace) {
    WriteScript(R"({"answers": [{"call": "GetHostName", "output": 5}]})");
    {
        const Variable script("TAVROSIM_SCRIPT", "script");
        EXPECT_NE(session_.Initialize(0, &EnglishLocale), 0U);
        EXPECT_EQ(LastError().details,
                  L"script: answers[0].output: a text is wanted, not a number; Simulator " +
                      std::wstring(tavrolib::LibraryVersion) +
                      L", built-in host, script \"script\"");
    }
    {
        const Variable script("TAVROSIM_SCRIPT", "missing");
        EXPECT_NE(session_.Initialize(0, &EnglishLocale), 0U);
        EXPECT_NE(LastError().details.find(L"missing: "), std::wstring::npos);
    }
    {
        const Variable trace("TAVROSIM_TRACE", "no folder/trace");
        EXPECT_NE(session_.Initialize(0, &EnglishLocale), 0U);
        EXPECT_NE(LastError().details.find(L"trace"), std::wstring::npos);
    }
    tavrolib_test::Write("host.json", "{\n \"name\": \"h\",\n}");
    EXPECT_NE(session_.Initialize(0, &EnglishLocale), 0U);
    EXPECT_TRUE(LastError().details.starts_with(L"host.json: line 3, column 1: "));
    EXPECT_TRUE(LastError().details.ends_with(
        L"; Simulator " + std::wstring(tavrolib::LibraryVersion) + L", host file \"host.json\""));
    std::string name;
    EXPECT_NE(session_.GetHostName(&name), 0U);
}

TEST_F(SessionTest, EveryCallButTheMessagesIsTracedInOrder) {
    const Variable trace("TAVROSIM_TRACE", "trace");
    tavroapi::ErrorRecord error;
    session_.GetLastErrorMessage(&error);
    session_.Initialize(1, &EnglishLocale);
    std::wstring text;
    session_.GetLocalizeMessage(256, &text);
    const std::string key = "02-00-5E-10-00-00";
    session_.DoOperation(ReadAdapterState, &key, nullptr, &text);
    std::uint32_t number = 0;
    session_.GetPartitionState(&key, &number);
    session_.GetAdapterPortNumber(&key, &number);
    const std::string adapter = "none";
    const std::uint32_t status = session_.GetPortWWNs(&adapter, &key, nullptr, nullptr);
    session_.Uninitialize();
    EXPECT_EQ(
        tavrolib_test::Lines("trace"),
        (std::vector<std::string>{
            R"({"call":"GetLastErrorMessage","status":0})",
            R"({"call":"Initialize","debug":1,"locale":"en_US.UTF-8","status":0})",
            R"({"call":"DoOperation","operation":70,"request":"02-00-5E-10-00-00","status":0})",
            R"({"call":"GetPartitionState","request":"02-00-5E-10-00-00","status":0})",
            R"({"call":"GetAdapterPortNumber","request":"02-00-5E-10-00-00","status":0})",
            R"({"call":"GetPortWWNs","adapter":"none","port":"02-00-5E-10-00-00","status":)" +
                std::to_string(status) + "}",
            R"({"call":"Uninitialize","status":0})",
        }));
}

TEST_F(SessionTest, ATraceWithOutputsReplaysAsAScript) {
    std::string played;
    {
        const Variable trace("TAVROSIM_TRACE", "trace");
        const Variable outputs("TAVROSIM_TRACE_OUTPUTS", "1");
        played = Listing(session_);
    }
    std::string script = R"({"model": false, "answers": [)";
    for (const std::string& line : tavrolib_test::Lines("trace")) {
        script += (script.back() == '[' ? "" : ",\n") + line.substr(0, line.size() - 1) +
                  R"(,"times":1})";
    }
    WriteScript(script + "]}");
    const Variable answers("TAVROSIM_SCRIPT", "script");
    const Variable noHost("TAVROSIM_HOST", ".");
    Session replayer;
    EXPECT_EQ(Listing(replayer), played);
}

TEST_F(SessionTest, LogIsWrittenOnlyWhenDebuggingAndAppended) {
    session_.Initialize(0, &EnglishLocale);
    session_.Uninitialize();
    EXPECT_FALSE(std::filesystem::exists("tavrocli.log"));
    tavrolib_test::Write("tavrocli.log", "before\n");
    session_.Initialize(1, &EnglishLocale);
    const std::string key = "02-00-5E-99-99-99\n";
    std::wstring state;
    session_.DoOperation(ReadAdapterState, &key, nullptr, &state);
    session_.Uninitialize();
    const auto lines = tavrolib_test::Lines("tavrocli.log");
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[0], "before");
    EXPECT_NE(lines[1].find("Simulator"), std::string::npos);
    EXPECT_NE(lines[2].find("Initialize debug 1 locale \"en_US.UTF-8\": status 0"),
              std::string::npos);
    EXPECT_NE(
        lines[3].find("DoOperation ReadAdapterState 70 request \"02-00-5E-99-99-99.\": status "),
        std::string::npos)
        << lines[3];
    EXPECT_NE(lines[3].find("No function of this host"), std::string::npos) << lines[3];
}

TEST_F(SessionTest, ALogThatCannotBeOpenedIsIgnored) {
    std::filesystem::create_directory("tavrocli.log");
    EXPECT_EQ(session_.Initialize(1, &EnglishLocale), 0U);
    std::string name;
    EXPECT_EQ(session_.GetHostName(&name), 0U);
}

}  // namespace
}  // namespace tavrosim
