#include "twin/watch/journal.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "twin/process/private_folder.h"

namespace tavrohost {
namespace {

class JournalTest : public testing::Test {
  protected:
    PrivateFolder folder_;
    const std::filesystem::path file_ = folder_.Path() / "journal";
};

const WatchedCall Operation = {
    .entryPoint = "DoOperation", .operation = 47, .operationName = "ReadFip", .request = "10:00"};
const WatchedCall Ports = {.entryPoint = "GetPortWWNs", .adapter = "A", .port = "Port 1"};

TEST_F(JournalTest, WhatIsNotThereIsEmpty) {
    const Journal journal = ReadJournal(file_);
    EXPECT_TRUE(journal.calls.empty());
    EXPECT_FALSE(journal.error || journal.noLibrary || journal.trouble);
}

TEST_F(JournalTest, CallsComeBackAsTheyWere) {
    {
        JournalWriter writer(file_);
        writer.Begin(Operation);
        writer.End(0, 201);
        writer.Begin(Ports);
        writer.End(4294967295U, std::nullopt);
    }
    WatchedCall operation = Operation;
    operation.status = 0;
    operation.completionCode = 201;
    WatchedCall ports = Ports;
    ports.status = 4294967295U;
    EXPECT_EQ(ReadJournal(file_).calls, (std::vector{operation, ports}));
}

TEST_F(JournalTest, AnyBytesOfARequestComeBack) {
    WatchedCall call = Operation;
    call.request = "not \xFF UTF-8 \xC3\xBC";
    JournalWriter(file_).Begin(call);
    EXPECT_EQ(ReadJournal(file_).calls, std::vector{call});
}

TEST_F(JournalTest, ACallThatDidNotComeBackHasNoStatus) {
    JournalWriter writer(file_);
    writer.Begin(Ports);
    writer.End(0, std::nullopt);
    writer.Begin(Operation);
    const Journal journal = ReadJournal(file_);
    ASSERT_EQ(journal.calls.size(), 2U);
    EXPECT_FALSE(journal.calls.back().status);
}

TEST_F(JournalTest, ALineThatIsCutOffDoesNotCount) {
    {
        JournalWriter writer(file_);
        writer.Begin(Operation);
    }
    std::ofstream(file_, std::ios::app | std::ios::binary) << R"({"status":)";
    ASSERT_EQ(ReadJournal(file_).calls.size(), 1U);
    EXPECT_FALSE(ReadJournal(file_).calls.front().status);
}

TEST_F(JournalTest, TheLastErrorAndTroublesAreTold) {
    JournalWriter writer(file_);
    tavroapi::ErrorRecord first;
    first.code = 1;
    writer.NoteError(first);
    writer.NoteError(
        {.code = 2, .message = L"m\x540D", .action = L"a", .additional = L"+", .details = L"d"});
    writer.NoteNoLibrary(L"tavro.dll: missing");
    writer.NoteTrouble("no answer");
    const Journal journal = ReadJournal(file_);
    EXPECT_EQ(journal.error, tavrolib::Json({{"code", 2},
                                             {"message", "m\xE5\x90\x8D"},
                                             {"action", "a"},
                                             {"additional", "+"},
                                             {"details", "d"}}));
    EXPECT_EQ(journal.noLibrary, "tavro.dll: missing");
    EXPECT_EQ(journal.trouble, "no answer");
}

TEST_F(JournalTest, TheFirstTroubleIsTheReason) {
    JournalWriter writer(file_);
    writer.NoteTrouble("first");
    writer.NoteTrouble("second");
    EXPECT_EQ(ReadJournal(file_).trouble, "first");
}

TEST_F(JournalTest, AnErrorIsAboutTheCallBeforeTheQuestionForIt) {
    JournalWriter writer(file_);
    writer.Begin(Ports);
    writer.End(9, std::nullopt);
    writer.Begin(Operation);
    writer.End(9, std::nullopt);
    writer.Begin({.entryPoint = "GetLastErrorMessage"});
    writer.End(0, std::nullopt);
    EXPECT_EQ(ReadJournal(file_).errorCall, std::nullopt);
    writer.NoteError({});
    EXPECT_EQ(ReadJournal(file_).errorCall, 1U);
    writer.Begin(Operation);
    writer.End(9, std::nullopt);
    EXPECT_EQ(ReadJournal(file_).errorCall, 1U);
    writer.NoteError({});
    EXPECT_EQ(ReadJournal(file_).errorCall, 3U);
}

TEST_F(JournalTest, ThatNotAllWasDoneComesBack) {
    JournalWriter writer(file_);
    writer.Begin(Operation);
    writer.End(0, std::nullopt, true);
    EXPECT_TRUE(ReadJournal(file_).calls.front().isIncomplete);
}

TEST_F(JournalTest, OnlyOneThatWasClosedIsWhole) {
    JournalWriter writer(file_);
    writer.Begin(Operation);
    EXPECT_FALSE(ReadJournal(file_).isWhole);
    writer.Close();
    EXPECT_TRUE(ReadJournal(file_).isWhole);
}

TEST_F(JournalTest, OneThatCannotBeWrittenDisturbsNobodyAndIsNotWhole) {
    const std::filesystem::path file = folder_.Path() / "no folder" / "journal";
    JournalWriter writer(file);
    writer.Begin(Operation);
    writer.End(0, std::nullopt);
    writer.Close();
    EXPECT_FALSE(ReadJournal(file).isWhole);
}

TEST(JsonOf, TellsThatNotAllWasDone) {
    EXPECT_EQ(JsonOf({.entryPoint = "DoOperation", .status = 0, .isIncomplete = true}).dump(),
              R"({"call":"DoOperation","status":0,"incomplete":true})");
}

TEST(JsonOf, HasWhatTheCallHas) {
    WatchedCall call = Operation;
    call.status = 0;
    call.completionCode = 5;
    EXPECT_EQ(JsonOf(call).dump(),
              R"({"call":"DoOperation","operation":47,"name":"ReadFip","request":"10:00",)"
              R"("status":0,"completion_code":5})");
    EXPECT_EQ(JsonOf({.entryPoint = "GetHostName"}).dump(), R"({"call":"GetHostName"})");
}

}  // namespace
}  // namespace tavrohost
