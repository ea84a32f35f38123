#include "simulator/script/script.h"

#include <gtest/gtest.h>

#include "unit/library/sample_call.h"

namespace tavrosim {
namespace {

using tavrolib::Call;
using tavrolib::EntryPoint;
using tavrolib::ShapeError;
using tavrolib_test::Outer;
using tavrolib_test::SampleCall;

std::string Refusal(const char* script) {
    try {
        Script::FromText(script);
        return "accepted";
    } catch (const ShapeError& error) {
        return error.what();
    }
}

Call CallOf(EntryPoint entryPoint) {
    Call call;
    call.entryPoint = entryPoint;
    return call;
}

std::uint32_t StatusGivenTo(Script& script, const Call& call) {
    const auto answer = script.Take(call);
    return answer ? answer->status : 0xFFFFFFFF;
}

constexpr std::uint32_t NoAnswer = 0xFFFFFFFF;

TEST(Script, DefaultsAreWordsAndModel) {
    for (const Script& script :
         {Script(), Script::FromText("{}"), Script::FromText(R"({"answers": []})")}) {
        EXPECT_FALSE(script.MessagesAreNumbers());
        EXPECT_TRUE(script.HasModel());
    }
    const Script script = Script::FromText(R"({"messages": "numbers", "model": false})");
    EXPECT_TRUE(script.MessagesAreNumbers());
    EXPECT_FALSE(script.HasModel());
}

TEST(Script, FirstMatchingAnswerInFileOrderIsTaken) {
    Script script = Script::FromText(R"({"answers": [
        {"call": "GetHostName", "status": 1},
        {"call": "DoOperation", "operation": 7, "status": 2},
        {"call": "DoOperation", "request": "other", "status": 3},
        {"call": "DoOperation", "operation": 999, "request": "key", "status": 4},
        {"call": "DoOperation", "status": 5}]})");
    EXPECT_EQ(StatusGivenTo(script, SampleCall(nullptr, nullptr)), 4U);
    EXPECT_EQ(StatusGivenTo(script, SampleCall(nullptr, nullptr, "other")), 3U);
    EXPECT_EQ(StatusGivenTo(script, SampleCall(nullptr, nullptr, "third")), 5U);
    EXPECT_EQ(StatusGivenTo(script, CallOf(EntryPoint::GetHostName)), 1U);
    EXPECT_EQ(StatusGivenTo(script, CallOf(EntryPoint::Uninitialize)), NoAnswer);
}

TEST(Script, StatusDefaultsToZero) {
    Script script = Script::FromText(R"({"answers": [{"call": "Uninitialize"}]})");
    EXPECT_EQ(StatusGivenTo(script, CallOf(EntryPoint::Uninitialize)), 0U);
}

TEST(Script, AnswersAreUsedUpAfterTheirTimes) {
    Script script = Script::FromText(R"({"answers": [
        {"call": "GetHostName", "status": 1, "times": 2},
        {"call": "GetHostName", "status": 2, "times": 0},
        {"call": "GetHostName", "status": 3, "times": 1}]})");
    std::vector<std::uint32_t> statuses;
    for (int i = 0; i < 4; ++i) {
        statuses.push_back(StatusGivenTo(script, CallOf(EntryPoint::GetHostName)));
    }
    EXPECT_EQ(statuses, (std::vector<std::uint32_t>{1, 1, 3, NoAnswer}));
}

TEST(Script, PortFunctionsAreMatchedByAdapterAndPort) {
    Script script = Script::FromText(R"({"answers": [
        {"call": "GetPortWWNs", "adapter": "A", "port": "Port 2", "status": 2},
        {"call": "GetPortWWNs", "adapter": "A", "status": 1}]})");
    Call call = CallOf(EntryPoint::GetPortWWNs);
    call.adapter = "A";
    call.port = "Port 1";
    EXPECT_EQ(StatusGivenTo(script, call), 1U);
    call.port = "Port 2";
    EXPECT_EQ(StatusGivenTo(script, call), 2U);
    call.adapter = "B";
    EXPECT_EQ(StatusGivenTo(script, call), NoAnswer);
}

TEST(Script, OutputAndResultAreWrittenWhateverTheStatus) {
    Script script = Script::FromText(R"({"answers": [
        {"call": "DoOperation", "status": 9, "output": ["text", "wide"], "result": 201}]})");
    Outer input;
    Outer output;
    output.flag = 3;
    EXPECT_EQ(StatusGivenTo(script, SampleCall(&input, &output)), 9U);
    EXPECT_EQ(output.text, "text");
    EXPECT_EQ(output.wide, L"wide");
    EXPECT_EQ(output.flag, 3);
    EXPECT_EQ(input.result, 201);
    EXPECT_EQ(StatusGivenTo(script, SampleCall(nullptr, nullptr)), 9U);
}

TEST(Script, OutputThatDoesNotFitTheCallIsRefusedThere) {
    Script script = Script::FromText(R"({"answers": [
        {"call": "GetHostName"}, {"call": "DoOperation", "output": ["", "", "flag"]}]})");
    Outer output;
    try {
        script.Take(SampleCall(nullptr, &output));
        FAIL() << "accepted";
    } catch (const ShapeError& error) {
        EXPECT_STREQ(error.what(), "answers[1].output[2]: a number is wanted, not a text");
    }
}

TEST(Script, ErrorIsGivenAsItStands) {
    Script script = Script::FromText(R"({"answers": [
        {"call": "Uninitialize", "times": 1, "error":
            {"code": 4294967295, "message": "m", "action": "a", "additional": "x", "details": "d日"}},
        {"call": "Uninitialize"}]})");
    const auto first = script.Take(CallOf(EntryPoint::Uninitialize));
    ASSERT_TRUE(first && first->error);
    EXPECT_EQ(first->error->code, 4294967295U);
    EXPECT_EQ(first->error->message, L"m");
    EXPECT_EQ(first->error->action, L"a");
    EXPECT_EQ(first->error->additional, L"x");
    EXPECT_EQ(first->error->details, L"d\u65e5");
    const auto second = script.Take(CallOf(EntryPoint::Uninitialize));
    ASSERT_TRUE(second);
    EXPECT_FALSE(second->error);
}

TEST(Script, WhatStandsInTracesOnlyIsAccepted) {
    EXPECT_EQ(
        Refusal(R"({"answers": [{"call": "Initialize", "debug": 1, "locale": "C", "status": 0},
                                      {"call": "DoOperation", "operation": 3, "input": ["x"]}]})"),
        "accepted");
}

TEST(Script, RefusalsNameThePlace) {
    EXPECT_EQ(Refusal("[]"), "an object is wanted, not an array");
    EXPECT_EQ(Refusal(R"({"answer": []})"), "member 1 is unknown");
    EXPECT_EQ(Refusal(R"({"messages": "Numbers"})"), R"(messages: "numbers" or "words" is wanted)");
    EXPECT_EQ(Refusal(R"({"model": 0})"), "model: true or false is wanted, not a number");
    EXPECT_EQ(Refusal(R"({"answers": [{}]})"), R"(answers[0]: "call" is missing)");
    EXPECT_EQ(Refusal(R"({"answers": [{"call": "GetHostname"}]})"),
              R"(answers[0].call: there is no such entry point)");
    EXPECT_EQ(
        Refusal(R"({"answers": [{"call": "GetHostName"}, {"call": "GetHostName", "request": 6}]})"),
        "answers[1].request: a text is wanted, not a number");
    EXPECT_EQ(Refusal(R"({"answers": [{"call": "GetHostName", "requests": ""}]})"),
              "answers[0]: member 2 is unknown");
    EXPECT_EQ(Refusal(R"({"answers": [{"call": "GetHostName", "error": {"text": ""}}]})"),
              "answers[0].error: member 1 is unknown");
    EXPECT_EQ(Refusal(R"({"answers": [{"call": "GetHostName", "output": ["x"]}]})"),
              "answers[0].output: a text is wanted, not an array");
    EXPECT_EQ(
        Refusal(R"({"answers": [{"call": "GetPortWWNs", "output": [[["k", "a", "0"]], []]}]})"),
        "answers[0].output[0][0][2]: a number is wanted, not a text");
    EXPECT_EQ(
        Refusal(R"({"answers": [{"call": "DoOperation", "operation": 70, "output": ["6"]}]})"),
        "answers[0].output: a text is wanted, not an array");
    EXPECT_EQ(Refusal(R"({"answers": [{"call": "DoOperation", "operation": 70, "result": 201}]})"),
              "answers[0].result: the call leaves no completion code");
    EXPECT_EQ(Refusal(R"({"answers": [{"call": "DoOperation", "operation": 9999, "output": []}]})"),
              "answers[0].output: the call has no result record");
    EXPECT_EQ(Refusal(R"({"answers": [{"call": "Uninitialize", "output": []}]})"),
              "answers[0].output: the call has no result record");
}

}  // namespace
}  // namespace tavrosim
