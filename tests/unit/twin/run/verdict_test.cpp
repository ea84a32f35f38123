#include "twin/run/verdict.h"

#include <gtest/gtest.h>

#include <vector>

namespace tavrohost {
namespace {

using tavro::Decision;
using tavroapi::OperationCode;

WatchedCall EntryPoint(const char* name, std::uint32_t status = 0) {
    return {.entryPoint = name, .status = status};
}

WatchedCall Operation(OperationCode code, std::uint32_t status = 0) {
    return {.entryPoint = "DoOperation",
            .operation = static_cast<std::uint32_t>(code),
            .status = status};
}

WatchedCall Completed(OperationCode code, std::int64_t completionCode) {
    WatchedCall call = Operation(code);
    call.completionCode = completionCode;
    return call;
}

// The verdict on these calls, behind a library that was initialized.
Verdict VerdictOn(const Decision& decision, std::vector<WatchedCall> calls) {
    calls.insert(calls.begin(), EntryPoint("Initialize"));
    return Judge(decision, calls);
}

const Decision OneOperation = OperationCode::WriteFip;
const Decision TwoEntryPoints = Decision::EachOf(
    {tavroapi::GetDiscoveredAdaptersEntry::Name, tavroapi::GetPortWWNsEntry::Name});
const Decision SomeOperation = Decision::SomeOf(
    {OperationCode::AddPortal, OperationCode::LogInToTarget, tavroapi::GetPortWWNsEntry::Name});

TEST(Judge, ACallThatDecidesHasToCome) {
    EXPECT_FALSE(VerdictOn(OneOperation, {}).isDone);
    EXPECT_FALSE(VerdictOn(OneOperation, {Operation(OperationCode::ReadFip)}).isDone);
    EXPECT_TRUE(VerdictOn(OneOperation, {Operation(OperationCode::WriteFip)}).isDone);
}

TEST(Judge, NoCallThatDecidesMayFail) {
    EXPECT_FALSE(VerdictOn(OneOperation, {Operation(OperationCode::WriteFip, 9)}).isDone);
    EXPECT_FALSE(VerdictOn(OneOperation, {Operation(OperationCode::WriteFip, 9),
                                          Operation(OperationCode::WriteFip)})
                     .isDone);
}

TEST(Judge, OtherCallsMayFail) {
    EXPECT_TRUE(
        VerdictOn(OneOperation, {Operation(OperationCode::ReadFip, 9),
                                 Operation(OperationCode::WriteFip), EntryPoint("Uninitialize", 9)})
            .isDone);
}

TEST(Judge, ACallThatDidNotComeBackIsNoSuccess) {
    WatchedCall call = Operation(OperationCode::WriteFip);
    call.status.reset();
    EXPECT_FALSE(VerdictOn(OneOperation, {call}).isDone);
}

TEST(Judge, TheCompletionCodeTellsWhenItTakesEffect) {
    const Verdict applied = VerdictOn(OneOperation, {Completed(OperationCode::WriteFip, 0)});
    EXPECT_TRUE(applied.isDone);
    EXPECT_FALSE(applied.restartRequired);
    const Verdict later = VerdictOn(OneOperation, {Completed(OperationCode::WriteFip, 201)});
    EXPECT_TRUE(later.isDone);
    EXPECT_TRUE(later.restartRequired);
    const Verdict refused = VerdictOn(OneOperation, {Completed(OperationCode::WriteFip, 5)});
    EXPECT_FALSE(refused.isDone);
    EXPECT_FALSE(refused.restartRequired);
}

TEST(Judge, WhatIsIncompleteIsNotDone) {
    WatchedCall call = Operation(OperationCode::WriteFip);
    call.isIncomplete = true;
    EXPECT_FALSE(VerdictOn(OneOperation, {call}).isDone);
}

TEST(Judge, TheLastFailureIsThatOfACallThatCounts) {
    EXPECT_EQ(VerdictOn(OneOperation,
                        {Operation(OperationCode::WriteFip), Operation(OperationCode::ReadFip, 9)})
                  .lastFailure,
              std::nullopt);
    // Behind the initialization.
    EXPECT_EQ(VerdictOn(OneOperation, {Operation(OperationCode::WriteFip, 9),
                                       Operation(OperationCode::WriteFip, 8),
                                       Operation(OperationCode::ReadFip, 9)})
                  .lastFailure,
              2U);
    const std::vector<WatchedCall> refused = {EntryPoint("Initialize", 9)};
    EXPECT_EQ(Judge(OneOperation, refused).lastFailure, 0U);
}

TEST(Judge, ARefusedCallRequiresNoRestart) {
    WatchedCall call = Completed(OperationCode::WriteFip, 201);
    call.status = 9;
    EXPECT_FALSE(VerdictOn(OneOperation, {call}).restartRequired);
    EXPECT_FALSE(VerdictOn(OneOperation, {Completed(OperationCode::ReadFip, 201)}).restartRequired);
}

TEST(Judge, EachOfSeveralCallsHasToCome) {
    EXPECT_FALSE(VerdictOn(TwoEntryPoints, {EntryPoint("GetDiscoveredAdapters")}).isDone);
    EXPECT_TRUE(
        VerdictOn(TwoEntryPoints, {EntryPoint("GetDiscoveredAdapters"), EntryPoint("GetPortWWNs")})
            .isDone);
    EXPECT_FALSE(
        VerdictOn(TwoEntryPoints, {EntryPoint("GetDiscoveredAdapters"),
                                   EntryPoint("GetPortWWNs", 9), EntryPoint("GetPortWWNs")})
            .isDone);
}

TEST(Judge, OneOfSeveralOperationsSufficesAndNoneMayFail) {
    EXPECT_FALSE(VerdictOn(SomeOperation, {EntryPoint("GetPortWWNs")}).isDone);
    EXPECT_TRUE(VerdictOn(SomeOperation, {Operation(OperationCode::AddPortal)}).isDone);
    EXPECT_FALSE(VerdictOn(SomeOperation, {Operation(OperationCode::AddPortal),
                                           Operation(OperationCode::LogInToTarget, 9)})
                     .isDone);
    EXPECT_FALSE(VerdictOn(SomeOperation,
                           {Operation(OperationCode::AddPortal), EntryPoint("GetPortWWNs", 9)})
                     .isDone);
}

TEST(Judge, SomeCommandsAreDecidedByNoCall) {
    EXPECT_TRUE(VerdictOn(Decision::Always(), {}).isDone);
    EXPECT_FALSE(VerdictOn(Decision::Never(), {}).isDone);
}

TEST(Judge, NothingIsDoneWithoutAnInitializedLibrary) {
    EXPECT_FALSE(Judge(Decision::Always(), {}).isDone);
    const std::vector<WatchedCall> refused = {EntryPoint("Initialize", 9)};
    EXPECT_FALSE(Judge(Decision::Always(), refused).isDone);
}

}  // namespace
}  // namespace tavrohost
