// A captured host behind the library's entry points.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "library/session/session.h"
#include "simulator/host/host_file.h"
#include "tavroapi/iscsi_records.h"
#include "tavroapi/iscsi_storage_records.h"
#include "tavroapi/operation_code.h"
#include "unit/library/support.h"
#include "unit/simulator/captured_host.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavrolib::Json;
using tavrolib::Session;
using tavrolib_test::Folder;
using tavrolib_test::Read;
using tavrolib_test::Variable;

constexpr const char* Answers = R"([
  {"call": "GetHostName", "status": 9, "error": {"code": 10, "message": "No name.", "details": "x"}},
  {"call": "DoOperation", "operation": 15, "request": "02-00-5E-10-00-02", "output": ["many"]},
  {"call": "DoOperation", "operation": 30, "request": "", "output": ["iqn.odd"]}])";

class CapturedSession : public testing::Test {
  protected:
    CapturedSession() {
        tavrolib_test::Write(file_, TextFromHost(CapturedHost(HostFromText(tavrosim_test::MadeHost),
                                                              Json::parse(Answers))));
        EXPECT_EQ(session_.Initialize(0, &tavrolib_test::EnglishLocale), 0U);
    }

    std::uint32_t Perform(OperationCode code, const std::string& request, void* input,
                          void* output) {
        return session_.DoOperation(static_cast<std::uint32_t>(code), &request, input, output);
    }

    const std::string port_ = "02-00-5E-10-00-02";
    Folder folder_;
    std::filesystem::path file_ = folder_ / "host.json";
    Variable host_{"TAVROSIM_HOST", file_.string()};
    Variable script_{"TAVROSIM_SCRIPT", ""};
    Variable trace_{"TAVROSIM_TRACE", ""};
    Session session_;
};

TEST_F(CapturedSession, TellsTheErrorOfACapturedRefusal) {
    std::string name;
    EXPECT_EQ(session_.GetHostName(&name), 9U);
    tavroapi::ErrorRecord error;
    EXPECT_EQ(session_.GetLastErrorMessage(&error), 0U);
    EXPECT_EQ(error.code, 10U);
    EXPECT_EQ(error.message, L"No name.");
    EXPECT_EQ(error.action, L"");
    EXPECT_EQ(error.details, L"x");
}

TEST_F(CapturedSession, ReadingCountersWritesNoFile) {
    const std::string before = Read(file_);
    tavroapi::IscsiParameterRecord record;
    EXPECT_EQ(Perform(OperationCode::ReadIscsiStatistics, port_, nullptr, &record), 0U);
    EXPECT_EQ(record.texts[tavroapi::iscsi_statistics::BytesSent], "many");
    EXPECT_EQ(Read(file_), before);
    EXPECT_FALSE(std::filesystem::exists(folder_ / "host.json.lock"));
}

TEST_F(CapturedSession, AChangeIsStoredAndLeavesWhatWasCaptured) {
    const Json before = Json::parse(Read(file_));
    tavroapi::InitiatorRecord initiator;
    initiator.name = "iqn.example:other";
    EXPECT_EQ(Perform(OperationCode::SetInitiator, "", &initiator, nullptr), 0U);
    EXPECT_EQ(Perform(OperationCode::ReadInitiator, "", nullptr, &initiator), 0U);
    EXPECT_EQ(initiator.name, "iqn.example:other");
    const Json after = Json::parse(Read(file_));
    EXPECT_EQ(after.at("captured").dump(), before.at("captured").dump());
    EXPECT_EQ(after.at("initiator").at("name"), "iqn.example:other");
    EXPECT_EQ(session_.Uninitialize(), 0U);
    EXPECT_EQ(session_.Initialize(0, &tavrolib_test::EnglishLocale), 0U);
    EXPECT_EQ(Perform(OperationCode::ReadInitiator, "", nullptr, &initiator), 0U);
    EXPECT_EQ(initiator.name, "iqn.example:other");
}

TEST_F(CapturedSession, AnUnusableCapturedPartFailsInitializeWithItsPlace) {
    Json host = Json::parse(Read(file_));
    host["captured"]["answers"][2]["output"] = Json::array({"iqn.odd", 5});
    tavrolib_test::Write(file_, host.dump());
    Session session;
    EXPECT_NE(session.Initialize(0, &tavrolib_test::EnglishLocale), 0U);
    tavroapi::ErrorRecord error;
    EXPECT_EQ(session.GetLastErrorMessage(&error), 0U);
    EXPECT_NE(
        error.details.find(L"captured.answers[2].output[1]: an array is wanted, not a number"),
        std::wstring::npos);
}

}  // namespace
}  // namespace tavrosim
