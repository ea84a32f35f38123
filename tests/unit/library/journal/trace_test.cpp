#include "library/journal/trace.h"

#include <gtest/gtest.h>

#include "unit/library/sample_call.h"
#include "unit/library/support.h"

namespace tavrolib {
namespace {

using tavrolib_test::Folder;
using tavrolib_test::Outer;
using tavrolib_test::SampleCall;
using tavrolib_test::SampleOuter;

class TraceTest : public testing::Test {
  protected:
    std::string LineOfCall(TraceOptions options, const Call& call,
                           const tavroapi::ErrorRecord* error = nullptr) {
        options.path = folder_ / "trace";
        Trace trace(options);
        trace.Begin(call);
        trace.End(call, 5, error);
        return tavrolib_test::Lines(options.path).back();
    }

    Folder folder_;
};

TEST_F(TraceTest, CallsHaveTheirOwnMembersOnly) {
    Call initialize;
    initialize.entryPoint = EntryPoint::Initialize;
    initialize.debug = 1;
    initialize.locale = L"ja_JP.UTF-8";
    EXPECT_EQ(LineOfCall({}, initialize),
              R"({"call":"Initialize","debug":1,"locale":"ja_JP.UTF-8","status":5})");
    Call functions;
    functions.entryPoint = EntryPoint::GetPortWWNs;
    functions.adapter = "A";
    functions.port = "Port 1";
    EXPECT_EQ(LineOfCall({}, functions),
              R"({"call":"GetPortWWNs","adapter":"A","port":"Port 1","status":5})");
    Call unknown;
    unknown.entryPoint = EntryPoint::DoOperation;
    unknown.operation = 12345;
    unknown.request = "";
    EXPECT_EQ(LineOfCall({}, unknown),
              R"({"call":"DoOperation","operation":12345,"request":"","status":5})");
}

TEST_F(TraceTest, InputStandsByPositionWithoutSecrets) {
    Outer input = SampleOuter();
    Outer output;
    EXPECT_EQ(
        LineOfCall({}, SampleCall(&input, &output)),
        R"({"call":"DoOperation","operation":999,"request":"key","input":)"
        R"(["t","w日",255,-7,"s1","s2",["n1","n2"],["i","***"],[["l","***"]],[[-1,"one"],[2,"two"]]],)"
        R"("status":5})");
}

TEST_F(TraceTest, SecretsStandWhereTheyAreWanted) {
    Outer input = SampleOuter();
    TraceOptions options;
    options.secrets = Secrets::Shown;
    const std::string line = LineOfCall(options, SampleCall(&input, nullptr));
    EXPECT_NE(line.find(R"(["i","hush"])"), std::string::npos) << line;
    EXPECT_EQ(line.find("***"), std::string::npos) << line;
}

TEST_F(TraceTest, OutputsErrorsAndResultsStandWhereTheyAreWanted) {
    Outer input;
    input.result = 201;
    Outer output;
    output.text = "out";
    output.inner.secret = "hush";
    const tavroapi::ErrorRecord error{7, L"m", L"a", L"x", L"d"};
    TraceOptions options;
    options.outputs = true;
    EXPECT_EQ(
        LineOfCall(options, SampleCall(&input, &output), &error),
        R"({"call":"DoOperation","operation":999,"request":"key",)"
        R"("input":["","",0,201,"","",["",""],["","***"],[],[]],"status":5,)"
        R"("output":["out","",0,0,"","",["",""],["","***"],[],[]],)"
        R"("error":{"code":7,"message":"m","action":"a","additional":"x","details":"d"},"result":201})");
    EXPECT_EQ(LineOfCall(options, SampleCall(nullptr, nullptr)),
              R"({"call":"DoOperation","operation":999,"request":"key","status":5})");
}

TEST_F(TraceTest, InputIsTheOneThatCameIn) {
    Outer input;
    input.text = "before";
    const Call call = SampleCall(&input, nullptr);
    Trace trace({folder_ / "trace"});
    trace.Begin(call);
    input.text = "after";
    trace.End(call, 0, nullptr);
    const std::string line = tavrolib_test::Read(folder_ / "trace");
    EXPECT_NE(line.find("before"), std::string::npos) << line;
}

TEST_F(TraceTest, LinesAreAppendedInOrder) {
    tavrolib_test::Write(folder_ / "trace", "{\"call\":\"old\"}\n");
    for (const char* request : {"one\ntwo", "\xFF", "\x03"}) {
        LineOfCall({}, SampleCall(nullptr, nullptr, request));
    }
    const auto lines = tavrolib_test::Lines(folder_ / "trace");
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_NE(lines[1].find(R"("one\ntwo")"), std::string::npos) << lines[1];
    EXPECT_NE(lines[2].find("\"\xEF\x9F\xBF\""), std::string::npos) << lines[2];
    EXPECT_NE(lines[3].find(R"("\u0003")"), std::string::npos) << lines[3];
}

TEST_F(TraceTest, OnlyTheOwnerCanReadIt) {
    LineOfCall({}, SampleCall(nullptr, nullptr));
    EXPECT_TRUE(tavrolib_test::IsOwnersOnly(folder_ / "trace"));
}

}  // namespace
}  // namespace tavrolib
