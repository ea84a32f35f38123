// What a session does for every provider.
#include "library/session/session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

#include "unit/library/sample_provider.h"
#include "unit/library/support.h"

namespace tavrolib {
namespace {

using tavrolib_test::EnglishLocale;
using tavrolib_test::Folder;
using tavrolib_test::Sample;
using tavrolib_test::Variable;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::uint32_t ReadAdapterState = 70;
constexpr std::uint32_t AddPortal = 4;

std::uint32_t Number(Status status) {
    return static_cast<std::uint32_t>(status);
}

Outcome Refusal(std::uint32_t status) {
    return tavrolib_test::RefusedBySample(status, L"Message.", L"Action.", L"details");
}

class SessionTest : public testing::Test {
  protected:
    SessionTest() { sample_ = {}; }

    // What the provider was asked since this was asked last.
    std::vector<std::string> Asked() { return std::exchange(sample_.asked, {}); }

    void Begin() {
        ASSERT_EQ(session_.Initialize(0, &EnglishLocale), 0U);
        Asked();
    }

    tavroapi::ErrorRecord LastError() {
        tavroapi::ErrorRecord error;
        EXPECT_EQ(session_.GetLastErrorMessage(&error), 0U);
        return error;
    }

    Folder folder_;
    Variable trace_{"TAVRO_SAMPLE_TRACE", ""};
    Sample& sample_ = Sample::Instance();
    Session session_;
    std::string name_;
};

TEST_F(SessionTest, AProviderIsConfiguredOpenedAndServes) {
    EXPECT_EQ(session_.Initialize(0, &EnglishLocale), 0U);
    EXPECT_THAT(Asked(), ElementsAre("configure", "intercept Initialize", "open"));
    sample_.served = Refusal(7);
    EXPECT_EQ(session_.GetHostName(&name_), 7U);
    EXPECT_THAT(Asked(), ElementsAre("intercept GetHostName", "open", "serve GetHostName"));
    EXPECT_EQ(LastError().details, L"details");
    Asked();
    EXPECT_EQ(session_.Uninitialize(), 0U);
    EXPECT_THAT(Asked(), ElementsAre("intercept Uninitialize"));
}

TEST_F(SessionTest, EveryInitializeConfiguresANewProvider) {
    Begin();
    EXPECT_EQ(session_.Initialize(0, &EnglishLocale), 0U);
    EXPECT_THAT(Asked(), ElementsAre("configure", "intercept Initialize", "open"));
}

TEST_F(SessionTest, TheFirstCallConfiguresButOnlyAnInitializedLibraryServes) {
    EXPECT_EQ(session_.GetHostName(&name_), Number(Status::NotInitialized));
    EXPECT_EQ(session_.DoOperation(ReadAdapterState, &name_, nullptr, nullptr),
              Number(Status::NotInitialized));
    EXPECT_EQ(session_.Uninitialize(), Number(Status::NotInitialized));
    EXPECT_THAT(Asked(), ElementsAre("configure", "intercept GetHostName", "intercept DoOperation",
                                     "intercept Uninitialize"));
    EXPECT_EQ(session_.GetHostName(&name_), Number(Status::NotInitialized));
    EXPECT_THAT(Asked(), ElementsAre("configure", "intercept GetHostName"));
}

TEST_F(SessionTest, AnInterceptedCallNeedsNothingAndGoesNoFurther) {
    sample_.intercepted = Refusal(9);
    EXPECT_EQ(session_.GetHostName(nullptr), 9U);
    EXPECT_EQ(session_.DoOperation(12345, nullptr, nullptr, nullptr), 9U);
    EXPECT_EQ(session_.Uninitialize(), 9U);
    EXPECT_EQ(session_.GetLocalizeMessage(24840, nullptr), 9U);
    for (const std::string& asked : Asked()) {
        EXPECT_TRUE(asked == "configure" || asked.starts_with("intercept ")) << asked;
    }
}

TEST_F(SessionTest, ARefusedConfigurationFailsInitializeUnopened) {
    sample_.configured = Refusal(11);
    EXPECT_EQ(session_.Initialize(0, &EnglishLocale), 11U);
    EXPECT_THAT(Asked(), ElementsAre("configure", "intercept Initialize"));
    EXPECT_EQ(LastError().code, 11U);
    EXPECT_EQ(session_.GetHostName(&name_), Number(Status::NotInitialized));
}

TEST_F(SessionTest, WhatCannotBeOpenedIsNotServed) {
    sample_.opened = Refusal(12);
    EXPECT_EQ(session_.Initialize(0, &EnglishLocale), 12U);
    sample_.intercepted = Done();
    EXPECT_EQ(session_.Initialize(0, &EnglishLocale), 0U);
    sample_.intercepted.reset();
    Asked();
    EXPECT_EQ(session_.GetHostName(nullptr), 12U);
    EXPECT_THAT(Asked(), ElementsAre("intercept GetHostName", "open"));
}

TEST_F(SessionTest, ACallThatLacksAnArgumentIsNotServed) {
    Begin();
    std::list<tavroapi::FunctionAddress> addresses;
    const auto lacks = [this](std::uint32_t status, const std::wstring& what) {
        EXPECT_EQ(status, Number(Status::MissingArgument));
        EXPECT_EQ(LastError().message, L"The call lacks an argument.");
        EXPECT_EQ(LastError().details, what);
    };
    lacks(session_.GetHostName(nullptr), L"host name");
    lacks(session_.GetDiscoveredAdapters(nullptr), L"adapter list");
    lacks(session_.GetPortWWNs(&name_, &name_, &addresses, nullptr), L"function list");
    lacks(session_.GetPartitionState(&name_, nullptr), L"result");
    lacks(session_.GetAdapterType(&name_, nullptr), L"result");
    lacks(session_.GetAdapterPortNumber(&name_, nullptr), L"result");
    lacks(session_.DoOperation(ReadAdapterState, &name_, nullptr, nullptr), L"result record");
    lacks(session_.DoOperation(AddPortal, &name_, nullptr, nullptr), L"input record");
    EXPECT_EQ(session_.DoOperation(12345, nullptr, nullptr, nullptr),
              Number(Status::UnknownOperation));
    EXPECT_EQ(LastError().details, L"operation 12345");
    for (const std::string& asked : Asked()) {
        EXPECT_FALSE(asked.starts_with("serve")) << asked;
    }
}

TEST_F(SessionTest, TheTraceIsWhereTheProvidersVariableSays) {
    const std::string file = (folder_ / "trace").string();
    {
        const Variable trace("TAVRO_SAMPLE_TRACE", file);
        Begin();
        sample_.served = Refusal(5);
        session_.GetHostName(&name_);
    }
    EXPECT_THAT(tavrolib_test::Lines(file),
                ElementsAre(R"({"call":"Initialize","debug":0,"locale":"en_US.UTF-8","status":0})",
                            R"({"call":"GetHostName","status":5})"));
}

TEST_F(SessionTest, AnUnusableTraceFailsInitializeAndNamesTheVariable) {
    const Variable trace("TAVRO_SAMPLE_TRACE", (folder_ / "no folder").string() + "/trace");
    EXPECT_EQ(session_.Initialize(0, &EnglishLocale), Number(Status::TraceUnusable));
    EXPECT_THAT(Asked(), ElementsAre("intercept Initialize"));
    EXPECT_TRUE(LastError().details.starts_with(L"TAVRO_SAMPLE_TRACE: "))
        << LastError().details.size();
}

TEST_F(SessionTest, AnErrorIsToldInTheLanguageOfTheSession) {
    sample_.served = Refusal(5);
    for (const auto& [locale, message, action] :
         {std::tuple{EnglishLocale, L"Message.", L"Action."},
          std::tuple{std::wstring(L"ja_JP.UTF-8"), L"理由。", L"対処。"},
          std::tuple{std::wstring(L"zh_CN.UTF-8"), L"原因。", L"措施。"}}) {
        ASSERT_EQ(session_.Initialize(0, &locale), 0U);
        session_.GetHostName(&name_);
        EXPECT_EQ(LastError().message, message);
        EXPECT_EQ(LastError().action, action);
        EXPECT_EQ(LastError().details, L"details");
    }
}

TEST_F(SessionTest, AnErrorBeforeInitializeIsInEnglish) {
    session_.GetHostName(&name_);
    EXPECT_EQ(LastError().message, L"The management library is not initialized.");
}

TEST_F(SessionTest, AFailedInitializeTellsItsErrorInTheLanguageThatItWasGiven) {
    sample_.opened = Refusal(12);
    const std::wstring japanese = L"Japanese_Japan.932";
    EXPECT_EQ(session_.Initialize(0, &japanese), 12U);
    EXPECT_EQ(LastError().message, L"理由。");
}

TEST_F(SessionTest, AnErrorInItsOwnWordsStaysAsItIs) {
    sample_.intercepted = Done();
    const std::wstring chinese = L"zh-CN";
    ASSERT_EQ(session_.Initialize(0, &chinese), 0U);
    sample_.intercepted->status = 3;
    sample_.intercepted->error = tavroapi::ErrorRecord{3, L"Broken.", L"Wait.", L"More.", L"state"};
    EXPECT_EQ(session_.GetHostName(&name_), 3U);
    sample_.intercepted.reset();
    EXPECT_EQ(LastError().message, L"Broken.");
    EXPECT_EQ(LastError().action, L"Wait.");
    EXPECT_EQ(LastError().additional, L"More.");
    EXPECT_EQ(LastError().details, L"state");
}

TEST_F(SessionTest, AFailedInitializeSaysWhatTheLibraryIs) {
    sample_.opened = Refusal(12);
    EXPECT_EQ(session_.Initialize(0, &EnglishLocale), 12U);
    EXPECT_EQ(LastError().details, L"details; " + std::wstring(tavrolib_test::SampleDescription));
    sample_.opened = tavrolib_test::RefusedBySample(12, L"Message.", L"Action.");
    EXPECT_EQ(session_.Initialize(0, &EnglishLocale), 12U);
    EXPECT_EQ(LastError().details, tavrolib_test::SampleDescription);
}

TEST_F(SessionTest, TheLogBeginsWithWhatTheLibraryIs) {
    const std::filesystem::path former = std::filesystem::current_path();
    std::filesystem::current_path(folder_ / "");
    sample_.served = Refusal(5);
    const std::wstring japanese = L"ja_JP.UTF-8";
    EXPECT_EQ(session_.Initialize(1, &japanese), 0U);
    session_.GetHostName(&name_);
    session_.Uninitialize();
    const std::vector<std::string> lines = tavrolib_test::Lines("tavrocli.log");
    std::filesystem::current_path(former);
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_TRUE(lines[0].ends_with(" UTC  Sample 1.0,.host \xE6\x97\xA5\xE6\x9C\xAC")) << lines[0];
    EXPECT_TRUE(lines[2].ends_with("  GetHostName: status 5, \"Message.\" [\"details\"]"))
        << "the log is in English: " << lines[2];
}

TEST_F(SessionTest, MessagesAreThoseOfTheLanguageAndKeepTheLastError) {
    const std::wstring japanese = L"ja_JP.UTF-8";
    sample_.served = Refusal(5);
    ASSERT_EQ(session_.Initialize(0, &japanese), 0U);
    session_.GetHostName(&name_);
    std::wstring text = L"before";
    EXPECT_EQ(session_.GetLocalizeMessage(24840, &text), 0U);
    EXPECT_EQ(text, FindMessage(Language::Japanese, 24840));
    EXPECT_EQ(session_.GetLocalizeMessage(1, &text), Number(Status::UnknownMessage));
    EXPECT_THAT(text, IsEmpty());
    EXPECT_EQ(LastError().code, 5U);
}

}  // namespace
}  // namespace tavrolib
