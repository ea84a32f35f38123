#include "twin/rehearse/plan_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "simulator/host/host_file.h"
#include "simulator/host/lookup.h"
#include "tavroapi/operation_code.h"
#include "twin/exit_status.h"
#include "twin/process/private_folder.h"

namespace tavrohost {
namespace {

using tavroapi::OperationCode;
using tavrosim::Host;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* FunctionMac = "02-00-5E-10-00-00";
constexpr auto SetTcpIp = static_cast<std::uint32_t>(OperationCode::SetEthernetTcpIp);
constexpr auto ReadTcpIp = static_cast<std::uint32_t>(OperationCode::ReadEthernetTcpIp);

tavrosim::EthernetPart& EthernetOf(Host& host) {
    return *tavrosim::FindFunction(host, FunctionMac).function->ethernet;
}

Host HostWithAddress(const std::string& address) {
    Host host = tavrosim::HostFromText(R"({
        "name": "small",
        "adapters": [{"name": "CNA", "number": 0, "type": "CNA", "partitionState": 1,
          "ports": [{"name": "Port 1", "functions": [
            {"number": 0, "mac": "02-00-5E-10-00-00", "ethernet": {"interface": "eth0"}}]}]}]})");
    EthernetOf(host).tcpIp.address = address;
    return host;
}

// A plan that changes an address.
Plan AddressPlan() {
    Plan plan;
    plan.arguments = {"-help"};
    plan.answers = tavrolib::ParseJson(R"({"format": 1, "answers": []})");
    plan.operations = {{.code = SetTcpIp, .request = FunctionMac, .completionCode = 0}};
    plan.before = HostWithAddress("192.0.2.1");
    plan.after = HostWithAddress("192.0.2.2");
    return plan;
}

WatchedCall CallOf(std::uint32_t operation, std::uint32_t status, std::int64_t completionCode) {
    return {.entryPoint = "DoOperation",
            .operation = operation,
            .request = FunctionMac,
            .status = status,
            .completionCode = completionCode};
}

RunReport ReportOf(RunOutcome outcome, std::vector<WatchedCall> calls) {
    RunReport report;
    report.outcome = outcome;
    report.calls = std::move(calls);
    return report;
}

// A host that a plan is done on, without a library.
struct PlayedHost {
    Host host = HostWithAddress("192.0.2.1");
    Host afterwards = HostWithAddress("192.0.2.2");
    RunReport report =
        ReportOf(RunOutcome::Done, {CallOf(ReadTcpIp, 36871, 0), CallOf(SetTcpIp, 0, 0)});
    bool failsAfterwards = false;
    std::vector<std::string> steps{};

    PlanRun Do(const Plan& plan) {
        return RunPlan(plan, {.capture = [this] { return Capture(); },
                              .begin = [this] { steps.emplace_back("begin"); },
                              .run =
                                  [this] {
                                      steps.emplace_back("run");
                                      host = afterwards;
                                      return report;
                                  }});
    }

  private:
    Host Capture() {
        steps.emplace_back("capture");
        if (failsAfterwards && steps.size() > 1) {
            throw TroubleError("the library does not answer");
        }
        return host;
    }
};

TEST(PlanRun, IsAsRehearsed) {
    PlayedHost host;
    const PlanRun run = host.Do(AddressPlan());
    EXPECT_THAT(host.steps, ElementsAre("capture", "begin", "run", "capture"));
    EXPECT_TRUE(run.IsAsRehearsed());
    EXPECT_EQ(StatusOf(run), Success);
    EXPECT_EQ(TextOf(run), "\nWhat happened is what was rehearsed.\n");
}

TEST(PlanRun, DoesNothingOnAHostThatHasChanged) {
    PlayedHost host;
    EthernetOf(host.host).tcpIp.gateway = "192.0.2.254";
    const PlanRun run = host.Do(AddressPlan());
    EXPECT_THAT(host.steps, ElementsAre("capture"));
    EXPECT_FALSE(run.IsRun());
    EXPECT_EQ(StatusOf(run), Negative);
    EXPECT_THAT(TextOf(run), HasSubstr("tcpIp.gateway: 0.0.0.0 → 192.0.2.254"));
}

TEST(PlanRun, WhatWaitsForTheRestartIsNeitherDriftNorDeviation) {
    Plan plan = AddressPlan();
    for (Host* const host : {&plan.before, &plan.after}) {
        host->adapters[0].pendingPartitions.emplace().mode = "MF";
        EthernetOf(*host).tcpIp.pendingVlanId = "12";
    }
    PlayedHost host;
    EXPECT_TRUE(host.Do(plan).IsAsRehearsed());
    EXPECT_THAT(host.steps, ElementsAre("capture", "begin", "run", "capture"));
}

TEST(PlanRun, ATemperatureIsNeitherDriftNorDeviation) {
    PlayedHost host;
    Plan plan = AddressPlan();
    for (Host* const each : {&plan.before, &plan.after, &host.host, &host.afterwards}) {
        EthernetOf(*each).settings.emplace().temperature = "41";
    }
    EthernetOf(host.host).settings->temperature = "42";
    EthernetOf(host.afterwards).settings->temperature = "43";
    EXPECT_TRUE(host.Do(plan).IsAsRehearsed());
    PlayedHost slower = host;
    slower.host = plan.before;
    EthernetOf(slower.host).settings->speed = "1 Gbps";
    EXPECT_FALSE(slower.Do(plan).IsRun());
}

TEST(PlanRun, TellsWhereTheHostIsAnother) {
    PlayedHost host;
    host.afterwards = HostWithAddress("192.0.2.3");
    const PlanRun run = host.Do(AddressPlan());
    EXPECT_EQ(StatusOf(run), Negative);
    const std::string text = TextOf(run);
    EXPECT_THAT(text, HasSubstr("\nThe command was done.\nThe host is another one than was "
                                "rehearsed (rehearsed → happened):\n"));
    EXPECT_THAT(text, HasSubstr("tcpIp.address: 192.0.2.2 → 192.0.2.3"));
}

TEST(PlanRun, TellsThatTheLibraryAnsweredOtherwise) {
    PlayedHost host;
    host.report.calls.back().completionCode = 7;
    PlanRun run = host.Do(AddressPlan());
    EXPECT_FALSE(run.hasSameCourse);
    EXPECT_EQ(StatusOf(run), Negative);
    EXPECT_EQ(TextOf(run),
              "\nThe command was done.\nThe library answered otherwise than the twin.\n");
    PlayedHost refusing;
    refusing.afterwards = refusing.host;
    refusing.report = ReportOf(RunOutcome::Refused, {CallOf(SetTcpIp, 36871, 0)});
    run = refusing.Do(AddressPlan());
    EXPECT_EQ(StatusOf(run), Negative);
    EXPECT_THAT(TextOf(run), HasSubstr("\nThe host refused what the twin did.\n"));
}

TEST(PlanRun, ARestartThatIsWantedOtherwiseIsAnotherCourse) {
    PlayedHost host;
    host.report.restartRequired = true;
    EXPECT_FALSE(host.Do(AddressPlan()).hasSameCourse);
}

TEST(PlanRun, TellsThatNobodyKnowsTheEnd) {
    PlayedHost host;
    host.failsAfterwards = true;
    const PlanRun run = host.Do(AddressPlan());
    EXPECT_EQ(run.unknownEnd, "the library does not answer");
    EXPECT_FALSE(run.IsAsRehearsed());
    EXPECT_EQ(StatusOf(run), Trouble);
    EXPECT_EQ(TextOf(run),
              "\nThe command was done.\n"
              "What became of the host is not known, since it could not be captured.\n");
    const auto json = PlanRunJson({.arguments = {"-help"}}, run);
    EXPECT_EQ(json["plan"]["unknown"], "the library does not answer");
    EXPECT_FALSE(json["plan"].contains("as_rehearsed"));
}

TEST(PlanRun, TellsThatTheRunFailed) {
    PlayedHost host;
    host.report = ReportOf(RunOutcome::Failed, {});
    host.report.failure = "the command crashed";
    const PlanRun run = host.Do(AddressPlan());
    EXPECT_THAT(host.steps, ElementsAre("capture", "begin", "run"));
    EXPECT_EQ(StatusOf(run), Trouble);
    EXPECT_EQ(TextOf(run), "\nThe run failed; what it did to the host is not known.\n");
}

void WriteFile(const std::filesystem::path& file, const std::string& text) {
    std::ofstream(file, std::ios::binary) << text;
}

std::string ReasonOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const TroubleError& error) {
        return error.what();
    }
    return "done";
}

TEST(TakenPlan, IsNotMarkedWhenAnotherOneStandsThere) {
    const PrivateFolder folder;
    const std::filesystem::path file = folder.Path() / "plan.json";
    const std::u8string name = file.u8string();
    WriteFile(file, TextFromPlan(AddressPlan()));
    const TakenPlan taken = TakePlan(std::string(name.begin(), name.end()));
    Plan other = AddressPlan();
    other.arguments = {"-about"};
    WriteFile(file, TextFromPlan(other));
    EXPECT_THAT(ReasonOf(taken.markUsed), HasSubstr("another plan was put there meanwhile"));
    WriteFile(file, TextFromPlan(AddressPlan()));
    EXPECT_EQ(ReasonOf(taken.markUsed), "done");
    EXPECT_THAT(ReasonOf(taken.markUsed), HasSubstr("this plan was used"));
}

}  // namespace
}  // namespace tavrohost
