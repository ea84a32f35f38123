// The lines that the library appends to tavrocli.log.
#include "library/journal/log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <ctime>
#include <fstream>
#include <map>

#include "library/session/session.h"
#include "library/session/version.h"
#include "library/text/text.h"
#include "tavroapi/described_operations.h"
#include "unit/library/support.h"

namespace tavrosim {
namespace {

using tavrolib::Operations;
using tavrolib::Session;
using tavrolib_test::EnglishLocale;
using tavrolib_test::Folder;
using tavrolib_test::Variable;
using ::testing::ElementsAre;

constexpr const char* LogFile = "tavrocli.log";

// The time of a line and the two blanks after it, "2026-01-31 09:30:00.125 UTC  ".
constexpr std::size_t TimeLength = 29;
constexpr std::size_t SecondsLength = 19;

std::string UtcNow() {
    const std::time_t now = std::time(nullptr);
    std::array<char, 40> text{};
    std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", std::gmtime(&now));
    return text.data();
}

// The lines of the log without their times.
std::vector<std::string> AllLinesWithoutTime() {
    std::vector<std::string> lines = tavrolib_test::Lines(LogFile);
    for (std::string& line : lines) {
        line.erase(0, TimeLength);
    }
    return lines;
}

// The lines of the calls: all but the first.
std::vector<std::string> LinesWithoutTime() {
    std::vector<std::string> lines = AllLinesWithoutTime();
    EXPECT_FALSE(lines.empty());
    lines.erase(lines.begin());
    return lines;
}

// The enumerators of the operations by their numbers, from the lines "    Name = 12,".
std::map<std::uint32_t, std::string> EnumeratorNames() {
    std::ifstream file(TAVRO_SOURCE_DIR "/tavroapi/operation_code.h");
    EXPECT_TRUE(file.is_open());
    std::map<std::uint32_t, std::string> names;
    for (std::string line; std::getline(file, line);) {
        if (const std::size_t sign = line.find(" = "); sign != std::string::npos) {
            names[static_cast<std::uint32_t>(std::stoul(line.substr(sign + 3)))] =
                line.substr(4, sign - 4);
        }
    }
    return names;
}

// A session in a folder of its own, which is the current one. The script tells what every call
// returns.
class LogTest : public testing::Test {
  protected:
    LogTest() : former_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder_ / "");
        UseAnswers("");
    }
    ~LogTest() override { std::filesystem::current_path(former_); }

    static void UseAnswers(const std::string& answers) {
        tavrolib_test::Write("script", R"({"model": false, "answers": [)" + answers + "]}");
    }

    Folder folder_;
    std::filesystem::path former_;
    Variable host_{"TAVROSIM_HOST", "host.json"};
    Variable script_{"TAVROSIM_SCRIPT", "script"};
    Variable trace_{"TAVROSIM_TRACE", ""};
    Session session_;
};

TEST_F(LogTest, EveryCallButMessagesHasItsLine) {
    const std::string adapter = "Tavro CNA 4610K";
    const std::string port = "Port 1";
    const std::string key = "02-00-5E-10-00-00";
    session_.Initialize(1, &EnglishLocale);
    std::wstring text;
    session_.GetLocalizeMessage(24833, &text);
    std::string name;
    session_.GetHostName(&name);
    std::list<tavroapi::AdapterRecord> adapters;
    session_.GetDiscoveredAdapters(&adapters);
    std::list<tavroapi::FunctionAddress> addresses;
    std::list<tavroapi::FunctionIdentity> identities;
    session_.GetPortWWNs(&adapter, &port, &addresses, &identities);
    std::uint32_t number = 0;
    session_.GetPartitionState(&key, &number);
    session_.GetAdapterType(&key, &name);
    session_.GetAdapterPortNumber(&key, &number);
    tavroapi::ErrorRecord error;
    session_.GetLastErrorMessage(&error);
    session_.DoOperation(70, &key, nullptr, &text);
    session_.DoOperation(70, nullptr, nullptr, &text);
    session_.DoOperation(9, &key, nullptr, nullptr);
    session_.Uninitialize();
    EXPECT_THAT(
        LinesWithoutTime(),
        ElementsAre(R"(Initialize debug 1 locale "en_US.UTF-8": status 0)", "GetHostName: status 0",
                    "GetDiscoveredAdapters: status 0",
                    R"(GetPortWWNs adapter "Tavro CNA 4610K" port "Port 1": status 0)",
                    R"(GetPartitionState request "02-00-5E-10-00-00": status 0)",
                    R"(GetAdapterType request "02-00-5E-10-00-00": status 0)",
                    R"(GetAdapterPortNumber request "02-00-5E-10-00-00": status 0)",
                    "GetLastErrorMessage: status 0",
                    R"(DoOperation ReadAdapterState 70 request "02-00-5E-10-00-00": status 0)",
                    "DoOperation ReadAdapterState 70: status 0",
                    R"(DoOperation of number 9 request "02-00-5E-10-00-00": status 0)",
                    "Uninitialize: status 0"));
}

TEST_F(LogTest, EveryOperationStandsUnderItsOwnName) {
    const std::string key = "K";
    session_.Initialize(1, &EnglishLocale);
    std::vector<std::string> wanted{R"(Initialize debug 1 locale "en_US.UTF-8": status 0)"};
    for (const auto& [number, name] : EnumeratorNames()) {
        session_.DoOperation(number, &key, nullptr, nullptr);
        wanted.push_back("DoOperation " + name + ' ' + std::to_string(number) +
                         R"( request "K": status 0)");
    }
    EXPECT_EQ(LinesWithoutTime(), wanted);
    EXPECT_EQ(Operations().size(), wanted.size() - 1);
}

TEST_F(LogTest, AFailureHasItsMessageAndDetails) {
    UseAnswers(
        R"({"call": "GetHostName", "status": 3,
            "error": {"code": 3, "message": "No\tanswer.", "action": "Wait.", "details": "state \u65e5\n4"}},
           {"call": "GetAdapterType", "status": 4, "error": {"code": 4, "message": "Gone."}},
           {"call": "GetPartitionState", "status": 5})");
    session_.Initialize(1, &EnglishLocale);
    std::string name;
    session_.GetHostName(&name);
    const std::string odd = "a\nb\x7F\x1F\xE9 \xC3\xA9\xC2\x80\xC2\x9F\xC2\xA0";
    session_.GetAdapterType(&odd, &name);
    std::uint32_t state = 0;
    session_.GetPartitionState(nullptr, &state);
    EXPECT_THAT(
        LinesWithoutTime(),
        ElementsAre(
            testing::_, "GetHostName: status 3, \"No.answer.\" [\"state \xE6\x97\xA5.4\"]",
            // A byte that is not UTF-8 stands as U+F700 and the byte.
            "GetAdapterType request \"a.b..\xEF\x9F\xA9 \xC3\xA9..\xC2\xA0\": status 4, \"Gone.\"",
            "GetPartitionState: status 5"));
}

TEST_F(LogTest, TheFirstLineTellsWhatIsSimulated) {
    const std::string simulator = "Simulator " + tavrolib::Utf8FromWide(tavrolib::LibraryVersion);
    session_.Initialize(1, &EnglishLocale);
    const Variable noScript("TAVROSIM_SCRIPT", "");
    session_.Initialize(1, &EnglishLocale);
    tavrolib_test::Write("host.json", R"({"name": "small", "adapters": []})");
    session_.Initialize(1, &EnglishLocale);
    const Variable script("TAVROSIM_SCRIPT", "answers");
    tavrolib_test::Write("answers", R"({"answers": []})");
    session_.Initialize(1, &EnglishLocale);
    const std::string initialized = R"(Initialize debug 1 locale "en_US.UTF-8": status 0)";
    EXPECT_THAT(
        AllLinesWithoutTime(),
        ElementsAre(simulator + R"(, script "script")", initialized, simulator + ", built-in host",
                    initialized, simulator + R"(, host file "host.json")", initialized,
                    simulator + R"(, host file "host.json", script "answers")", initialized));
}

TEST_F(LogTest, ALineBeginsWithItsTimeInUtc) {
    const std::string before = UtcNow();
    session_.Initialize(1, &EnglishLocale);
    const std::string after = UtcNow();
    const std::string line = tavrolib_test::Lines(LogFile).at(0);
    EXPECT_GE(line.substr(0, SecondsLength), before);
    EXPECT_LE(line.substr(0, SecondsLength), after);
    EXPECT_EQ(line.substr(SecondsLength, 1), ".");
    EXPECT_EQ(line.substr(SecondsLength + 1, 3).find_first_not_of("0123456789"), std::string::npos);
    EXPECT_EQ(line.substr(SecondsLength + 4), " UTC  " + AllLinesWithoutTime().at(0));
}

}  // namespace
}  // namespace tavrosim
