#include "simulator/answers/captured_answers.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <optional>

#include "simulator/answers/answer.h"
#include "tavroapi/fcoe_records.h"
#include "tavroapi/iscsi_storage_records.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavrolib::Call;
using tavrolib::EntryPoint;
using tavrolib::Json;
using tavrolib::Place;
using tavrolib::ShapeError;

Json CapturedWith(const std::string& answers) {
    return Json::parse(R"({"answers": )" + answers + R"(, "host": {}})");
}

std::string Refusal(const Json& captured) {
    const Place root;
    try {
        const CapturedAnswers answers(captured, Place(root, "captured"));
        return "accepted";
    } catch (const ShapeError& error) {
        return error.what();
    }
}

std::string RefusalOf(const std::string& answer) {
    return Refusal(CapturedWith(R"([{"call": "GetHostName"}, )" + answer + "]"));
}

Call Query(EntryPoint entryPoint, const char* request = nullptr) {
    Call call;
    call.entryPoint = entryPoint;
    if (request != nullptr) {
        call.request = request;
    }
    return call;
}

template <OperationCode Code>
Call OperationCall(const char* request, void* input = nullptr) {
    Call call = Query(EntryPoint::DoOperation, request);
    call.operation = static_cast<std::uint32_t>(Code);
    call.described = tavrolib::FindOperation(*call.operation);
    call.input = input;
    return call;
}

constexpr std::uint32_t NoAnswer = 0xFFFFFFFF;

// The status of the answer to a call; the answers of these tests are told apart by it.
std::uint32_t StatusFor(const CapturedAnswers& answers, const Call& call) {
    const Answer* const answer = answers.Find(call);
    return answer == nullptr ? NoAnswer : answer->status;
}

TEST(CapturedAnswers, AreFoundByEntryPointOperationAndIdentifier) {
    const CapturedAnswers answers(CapturedWith(R"([
        {"call": "GetHostName", "status": 1},
        {"call": "GetAdapterType", "request": "02-00-5E-10-00-00", "status": 2},
        {"call": "DoOperation", "operation": 70, "request": "02-00-5E-10-00-00", "status": 3},
        {"call": "DoOperation", "operation": 2, "request": "02-00-5E-10-00-00", "status": 4},
        {"call": "DoOperation", "operation": 70, "request": "no MAC", "status": 5},
        {"call": "DoOperation", "operation": 30, "request": "", "status": 6}])"));
    EXPECT_EQ(StatusFor(answers, Query(EntryPoint::GetHostName)), 1U);
    EXPECT_EQ(StatusFor(answers, Query(EntryPoint::GetAdapterType, "02:00:5e:10:00:00")), 2U);
    EXPECT_EQ(StatusFor(answers, Query(EntryPoint::GetPartitionState, "02-00-5E-10-00-00")),
              NoAnswer);
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ReadAdapterState>("02005E100000")),
              3U);
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ReadIscsiPort>("02-00-5E-10-00-00")),
              4U);
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ReadAdapterState>("no MAC")), 5U);
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ReadAdapterState>("no mac")),
              NoAnswer);
    EXPECT_EQ(
        StatusFor(answers, OperationCall<OperationCode::ReadAdapterState>("02-00-5E-10-00-01")),
        NoAnswer);
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ReadInitiator>("")), 6U);
}

TEST(CapturedAnswers, OfPortsAreFoundByAdapterAndPort) {
    const CapturedAnswers answers(CapturedWith(R"([
        {"call": "GetPortWWNs", "adapter": "A", "port": "1", "status": 1},
        {"call": "GetPortWWNs", "adapter": "A", "port": "2", "status": 2}])"));
    Call call = Query(EntryPoint::GetPortWWNs);
    call.adapter = "A";
    call.port = "2";
    EXPECT_EQ(StatusFor(answers, call), 2U);
    call.adapter = "B";
    EXPECT_EQ(StatusFor(answers, call), NoAnswer);
}

TEST(CapturedAnswers, AreFoundByTheInput) {
    const CapturedAnswers answers(CapturedWith(R"([
        {"call": "DoOperation", "operation": 10, "request": "k", "input": "a", "status": 1},
        {"call": "DoOperation", "operation": 10, "request": "k", "input": "b\uf7e9", "status": 2},
        {"call": "DoOperation", "operation": 38, "request": "k", "input": 0, "status": 3}])"));
    char other[] = "b\xE9";
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ReadTarget>("k", other)), 2U);
    char unknown[] = "c";
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ReadTarget>("k", unknown)), NoAnswer);
    std::uint32_t number = 0;
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ReadFcoeStatistics>("k", &number)),
              3U);
    number = 1;
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ReadFcoeStatistics>("k", &number)),
              NoAnswer);
}

TEST(CapturedAnswers, HowAWwnInTheInputIsWrittenDoesNotMatter) {
    const CapturedAnswers answers(CapturedWith(R"([
        {"call": "DoOperation", "operation": 36, "request": "k",
         "input": "20:00:02:00:5E:20:00:01", "status": 1},
        {"call": "DoOperation", "operation": 52, "request": "k",
         "input": ["20:00:02:00:5E:20:00:01", "10:00:02:00:5E:10:00:04"], "status": 2},
        {"call": "DoOperation", "operation": 10, "request": "k",
         "input": "20:00:02:00:5E:20:00:01", "status": 3}])"));
    char wwn[] = "200002005e200001";
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ReadFcoeTarget>("k", wwn)), 1U);
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ListFcoeLuns>("k", wwn)), NoAnswer);
    tavroapi::VirtualPortQuery query{"20-00-02-00-5e-20-00-01", "1000:0200:5e10:0004"};
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ListVirtualPortTargets>("k", &query)),
              2U);
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ReadTarget>("k", wwn)), NoAnswer);
}

TEST(CapturedAnswers, OfASessionAreFoundByTargetAndNumber) {
    const CapturedAnswers answers(CapturedWith(R"([
        {"call": "DoOperation", "operation": 17, "request": "k", "input": ["t", "0"], "status": 1},
        {"call": "DoOperation", "operation": 17, "request": "k", "input": ["t", "3", "rest"],
         "status": 2}])"));
    tavroapi::SessionRecord session;
    session.texts[0] = "t";
    session.texts[1] = "3";
    session.texts[2] = "what was there before";
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ReadSession>("k", &session)), 2U);
    session.texts[1] = "0";
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ReadSession>("k", &session)), 1U);
    session.texts[0] = "u";
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ReadSession>("k", &session)),
              NoAnswer);
}

TEST(CapturedAnswers, TheFirstOfSeveralCounts) {
    const CapturedAnswers answers(CapturedWith(
        R"([{"call": "GetHostName", "status": 1}, {"call": "GetHostName", "status": 2}])"));
    EXPECT_EQ(StatusFor(answers, Query(EntryPoint::GetHostName)), 1U);
}

TEST(CapturedAnswers, AnExportOfSettingsIsAnsweredAsTheirReading) {
    const CapturedAnswers answers(
        CapturedWith(R"([{"call": "DoOperation", "operation": 63, "request": "k", "status": 1}])"));
    EXPECT_EQ(StatusFor(answers, OperationCall<OperationCode::ExportAdapterSettings>("k")), 1U);
}

TEST(CapturedAnswers, AreKeptAsTheyStand) {
    const Json captured = CapturedWith(R"([{"output": "\uf7e9 A", "call": "GetHostName"}])");
    EXPECT_EQ(CapturedAnswers(captured).AsJson().dump(), captured.dump());
}

TEST(CapturedAnswers, RefusalsNameThePlace) {
    EXPECT_EQ(Refusal(Json::array()), "captured: an object is wanted, not an array");
    EXPECT_EQ(Refusal(Json::parse(R"({"host": {}})")), R"(captured: "answers" is missing)");
    EXPECT_EQ(Refusal(Json::parse(R"({"answers": []})")), R"(captured: "host" is missing)");
    EXPECT_EQ(Refusal(Json::parse(R"({"answers": [], "host": {}, "more": 1})")),
              "captured: member 3 is unknown");
    EXPECT_EQ(Refusal(CapturedWith("{}")), "captured.answers: an array is wanted, not an object");
    EXPECT_EQ(RefusalOf("5"), "captured.answers[1]: an object is wanted, not a number");
    EXPECT_EQ(RefusalOf("{}"), R"(captured.answers[1]: "call" is missing)");
    EXPECT_EQ(RefusalOf(R"({"call": "GetHostName", "times": 1})"),
              "captured.answers[1]: member 2 is unknown");
    EXPECT_EQ(RefusalOf(R"({"call": "Initialize"})"),
              "captured.answers[1].call: a call that reads something of a host is wanted");
    EXPECT_EQ(RefusalOf(R"({"call": "DoOperation"})"),
              R"(captured.answers[1]: "operation" is missing)");
    EXPECT_EQ(RefusalOf(R"({"call": "DoOperation", "operation": 9})"),
              "captured.answers[1].operation: an operation that reads is wanted");
    EXPECT_EQ(RefusalOf(R"({"call": "DoOperation", "operation": 3, "input": []})"),
              "captured.answers[1].operation: an operation that reads is wanted");
    // They fill in records, but a ping reads nothing of the host, and a reset changes it.
    for (const char* const operation : {"18", "41", "42", "66", "69"}) {
        EXPECT_EQ(RefusalOf(R"({"call": "DoOperation", "input": 0, "operation": )" +
                            std::string(operation) + "}"),
                  "captured.answers[1].operation: an operation that reads is wanted")
            << operation;
    }
    EXPECT_EQ(RefusalOf(R"({"call": "DoOperation", "operation": 10, "request": "k"})"),
              R"(captured.answers[1]: "input" is missing)");
    EXPECT_EQ(RefusalOf(R"({"call": "DoOperation", "operation": 2, "input": "k"})"),
              "captured.answers[1].input: the call has no input");
    EXPECT_EQ(RefusalOf(R"({"call": "GetHostName", "input": "k"})"),
              "captured.answers[1].input: the call has no input");
    EXPECT_EQ(RefusalOf(R"({"call": "GetHostName", "output": 7})"),
              "captured.answers[1].output: a text is wanted, not a number");
    EXPECT_EQ(RefusalOf(R"({"call": "DoOperation", "operation": 6, "output": [["a", "1"], 7]})"),
              "captured.answers[1].output[1]: an array is wanted, not a number");
    EXPECT_EQ(RefusalOf(R"({"call": "GetHostName", "error": {"code": -1}})"),
              "captured.answers[1].error.code: a whole number from 0 to 4294967295 is wanted");
}

}  // namespace
}  // namespace tavrosim
