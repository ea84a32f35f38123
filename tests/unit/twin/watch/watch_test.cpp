#include "twin/watch/watch.h"

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "mgmt/operation.h"
#include "tavroapi/fcoe_records.h"
#include "tavroapi/iscsi_records.h"
#include "tavroapi/partition_records.h"
#include "twin/process/private_folder.h"

namespace tavrohost {
namespace {

// What the library below does.
struct Behaviour {
    std::uint32_t status = 0;
    int errorsAsked = 0;
    bool throws = false;
    bool throwsWhenAsked = false;
    std::uint32_t askedStatus = 0;  // of GetLastErrorMessage
    int ends = 0;
    std::string replies{};  // to a ping from an iSCSI port
    std::string lost{};     // of one from an FCoE port
};
Behaviour behaviour;

std::uint32_t DoOperation(std::uint32_t operation, std::string*, void* input, void* output) {
    if (behaviour.throws) {
        throw std::runtime_error("out of the library");
    }
    if (operation == static_cast<std::uint32_t>(tavroapi::OperationCode::WritePersonality)) {
        static_cast<tavroapi::PersonalitySetting*>(input)->result = 201;
    } else if (operation ==
               static_cast<std::uint32_t>(tavroapi::OperationCode::PingFromIscsiPort)) {
        static_cast<tavroapi::IscsiPingResult*>(output)->received = behaviour.replies;
    } else if (operation == static_cast<std::uint32_t>(tavroapi::OperationCode::PingFromFcoePort)) {
        static_cast<tavroapi::FcoePingResult*>(output)->lost = behaviour.lost;
    }
    return behaviour.status;
}

std::uint32_t GetLocalizeMessage(std::uint32_t number, std::wstring* text) {
    *text = L"Above\nMessage " + std::to_wstring(number) + L"?";
    return 0;
}

std::uint32_t GetLastErrorMessage(tavroapi::ErrorRecord* error) {
    ++behaviour.errorsAsked;
    if (behaviour.throwsWhenAsked) {
        throw std::runtime_error("out of the library");
    }
    if (behaviour.askedStatus == 0) {
        error->message = L"why";
    }
    return behaviour.askedStatus;
}

std::uint32_t Uninitialize() {
    ++behaviour.ends;
    return 0;
}

const std::map<std::string, void*> EntryPoints = {
    {tavroapi::DoOperationEntry::Name, reinterpret_cast<void*>(&DoOperation)},
    {tavroapi::GetLocalizeMessageEntry::Name, reinterpret_cast<void*>(&GetLocalizeMessage)},
    {tavroapi::GetLastErrorMessageEntry::Name, reinterpret_cast<void*>(&GetLastErrorMessage)},
    {tavroapi::UninitializeEntry::Name, reinterpret_cast<void*>(&Uninitialize)},
};

class WatchTest : public testing::Test {
  protected:
    WatchTest() {
        behaviour = {};
        tavro::UseLibrary(watch_.Watched());
    }
    ~WatchTest() override { tavro::UseLibrary(former_); }

    Journal Written() const { return ReadJournal(file_); }

    // Of each call.
    std::vector<bool> Incomplete() const {
        std::vector<bool> incomplete;
        for (const WatchedCall& call : Written().calls) {
            incomplete.push_back(call.isIncomplete);
        }
        return incomplete;
    }

    static std::wstring Fetch(std::uint32_t number) {
        std::wstring text;
        tavro::ResolveEntryPoint<tavroapi::GetLocalizeMessageEntry>()(number, &text);
        return text;
    }

    const tavro::LibrarySource former_ = tavro::ManagementLibrary();
    PrivateFolder folder_;
    const std::filesystem::path file_ = folder_.Path() / "journal";
    Watch watch_{{.failureReason = {},
                  .find =
                      [](const char* name) {
                          const auto found = EntryPoints.find(name);
                          return found == EntryPoints.end() ? nullptr : found->second;
                      }},
                 file_};
};

TEST_F(WatchTest, AnOperationIsWrittenDownWithItsOutcome) {
    tavroapi::PersonalitySetting setting;
    EXPECT_EQ(tavro::DoOperation<tavroapi::OperationCode::WritePersonality>("02-00", setting),
              tavro::CallOutcome::Done);
    EXPECT_EQ(setting.result, 201);
    EXPECT_EQ(Written().calls, std::vector{(WatchedCall{.entryPoint = "DoOperation",
                                                        .operation = 61,
                                                        .operationName = "WritePersonality",
                                                        .request = "02-00",
                                                        .status = 0,
                                                        .completionCode = 201})});
}

// Five replies are asked for.
TEST_F(WatchTest, APingFromAnIscsiPortWithoutItsRepliesIsIncomplete) {
    tavroapi::IscsiPingRequest request;
    tavroapi::IscsiPingResult result;
    for (const char* const replies : {"5", "6", " 5 ", "4", "0", "", "none", "2147483648"}) {
        behaviour.replies = replies;
        tavro::DoOperation<tavroapi::OperationCode::PingFromIscsiPort>("02-00", request, result);
        EXPECT_EQ(result.received, replies);
    }
    EXPECT_EQ(Incomplete(), (std::vector{false, false, false, true, true, true, true, true}));
}

TEST_F(WatchTest, APingFromAnFcoePortWithLossesIsIncomplete) {
    tavroapi::FcoePingRequest request;
    tavroapi::FcoePingResult result;
    for (const char* const lost : {"0", "", "1", "10"}) {
        behaviour.lost = lost;
        tavro::DoOperation<tavroapi::OperationCode::PingFromFcoePort>("10:00", request, result);
    }
    EXPECT_EQ(Incomplete(), (std::vector{false, false, true, true}));
}

TEST_F(WatchTest, ARefusedPingIsNotJudgedByItsRecords) {
    behaviour.status = 9;
    tavroapi::FcoePingRequest request;
    tavroapi::FcoePingResult result;
    behaviour.lost = "1";
    tavro::DoOperation<tavroapi::OperationCode::PingFromFcoePort>("10:00", request, result);
    EXPECT_EQ(Incomplete(), std::vector{false});
}

TEST_F(WatchTest, AnEntryPointThatTheLibraryLacksIsLacking) {
    EXPECT_EQ(tavro::ResolveEntryPoint<tavroapi::GetHostNameEntry>(), nullptr);
    EXPECT_NE(tavro::ResolveEntryPoint<tavroapi::UninitializeEntry>(), nullptr);
}

TEST_F(WatchTest, MessagesAreNoCallsAndAreFoundInTheLineThatShowsThem) {
    EXPECT_EQ(Fetch(12), L"Above\nMessage 12?");
    Fetch(7);
    EXPECT_TRUE(Written().calls.empty());
    EXPECT_EQ(watch_.MessageIn(L"\tMessage 7? : "), 7U);
    EXPECT_EQ(watch_.MessageIn(L"\tMessage 12? Message 7? : "), 7U);
    EXPECT_EQ(watch_.MessageIn(L"\tMessage 12? : "), 12U);
    EXPECT_EQ(watch_.MessageIn(L"\tMessage 1 : "), std::nullopt);
    EXPECT_EQ(watch_.MessageIn(L""), std::nullopt);
}

TEST_F(WatchTest, OnlyTheLastMessagesAreKnown) {
    constexpr std::uint32_t Many = 100;
    for (std::uint32_t number = 0; number < Many; ++number) {
        Fetch(number);
    }
    EXPECT_EQ(watch_.MessageIn(L"Message 99?"), 99U);
    EXPECT_EQ(watch_.MessageIn(L"Message 5?"), std::nullopt);
}

// A call that the program does not ask about.
void FailInSilence() {
    behaviour.status = 9;
    tavroapi::FipConfig config;
    tavro::DoOperation<tavroapi::OperationCode::ReadFip>("10:00", config);
}

TEST_F(WatchTest, TheLibraryIsAskedWhyBeforeItIsUninitialized) {
    FailInSilence();
    EXPECT_EQ(behaviour.errorsAsked, 0);
    tavro::ResolveEntryPoint<tavroapi::UninitializeEntry>()();
    EXPECT_EQ(behaviour.errorsAsked, 1);
    const Journal journal = Written();
    ASSERT_TRUE(journal.error);
    EXPECT_EQ((*journal.error)["message"], "why");
    EXPECT_EQ(journal.calls.size(), 2U);  // that the watch asked is no call of the program
}

TEST_F(WatchTest, WhatTheProgramWasToldIsNotAskedAgain) {
    FailInSilence();
    tavroapi::ErrorRecord error;
    tavro::ResolveEntryPoint<tavroapi::GetLastErrorMessageEntry>()(&error);
    tavro::ResolveEntryPoint<tavroapi::UninitializeEntry>()();
    EXPECT_EQ(behaviour.errorsAsked, 1);
    EXPECT_EQ(error.message, L"why");
    EXPECT_TRUE(Written().error);
}

TEST_F(WatchTest, ALibraryThatThrowsWhenAskedWhyIsUninitializedAllTheSame) {
    FailInSilence();
    behaviour.throwsWhenAsked = true;
    EXPECT_EQ(tavro::ResolveEntryPoint<tavroapi::UninitializeEntry>()(), 0U);
    EXPECT_EQ(behaviour.errorsAsked, 1);
    EXPECT_EQ(behaviour.ends, 1);
    EXPECT_FALSE(Written().error);
    EXPECT_EQ(Written().calls.back().entryPoint, "Uninitialize");
}

// The record is then as it was before.
TEST_F(WatchTest, ALibraryThatRefusesToTellWhyHasSaidNothing) {
    behaviour.askedStatus = 3;
    FailInSilence();
    tavro::ResolveEntryPoint<tavroapi::UninitializeEntry>()();
    EXPECT_FALSE(Written().error);
    FailInSilence();
    tavroapi::ErrorRecord error;
    EXPECT_EQ(tavro::ResolveEntryPoint<tavroapi::GetLastErrorMessageEntry>()(&error), 3U);
    EXPECT_FALSE(Written().error);
}

TEST_F(WatchTest, NothingIsAskedAfterASuccess) {
    FailInSilence();
    behaviour.status = 0;
    tavroapi::FipConfig config;
    tavro::DoOperation<tavroapi::OperationCode::ReadFip>("10:00", config);
    tavro::ResolveEntryPoint<tavroapi::UninitializeEntry>()();
    EXPECT_EQ(behaviour.errorsAsked, 0);
    EXPECT_FALSE(Written().error);
}

TEST_F(WatchTest, AnExceptionOfTheLibraryPassesThrough) {
    behaviour.throws = true;
    tavroapi::FipConfig config;
    EXPECT_THROW(tavro::DoOperation<tavroapi::OperationCode::ReadFip>("10:00", config),
                 std::runtime_error);
    ASSERT_EQ(Written().calls.size(), 1U);
    EXPECT_FALSE(Written().calls.front().status);
}

TEST(Watch, TellsWhyThereIsNoLibrary) {
    const PrivateFolder folder;
    const Watch watch({.failureReason = L"tavro.dll: missing",
                       .find = [](const char*) -> void* { return nullptr; }},
                      folder.Path() / "journal");
    EXPECT_EQ(watch.Watched().failureReason, L"tavro.dll: missing");
    EXPECT_EQ(ReadJournal(folder.Path() / "journal").noLibrary, "tavro.dll: missing");
}

}  // namespace
}  // namespace tavrohost
