#include "twin/rehearse/plan.h"

#include <gtest/gtest.h>

#include "library/json/place.h"
#include "simulator/host/host_file.h"

namespace tavrohost {
namespace {

using tavrosim::TextFromHost;

Plan SamplePlan() {
    Plan plan;
    plan.arguments = {"-portal", "02-00-5E-10-00-02", "-add", "192.0.2.9"};
    plan.answers = tavrolib::ParseJson(R"({"format":1,"answers":[]})");
    plan.operations = {{4, "02-00-5E-10-00-02", 0}, {6, "odd \xE9", 36871}, {61, "", 0, 201, true}};
    plan.before = tavrosim::HostFromText(R"({"name": "small", "isnsServers": ["192.0.2.1"],
                                             "adapters": []})");
    plan.after = plan.before;
    plan.after.name = "another";
    plan.restartRequired = true;
    return plan;
}

TEST(Plan, ComesBackFromItsDocument) {
    const Plan plan = SamplePlan();
    const Plan read = PlanFromText(TextFromPlan(plan));
    EXPECT_EQ(read.arguments, plan.arguments);
    EXPECT_EQ(read.answers, plan.answers);
    ASSERT_EQ(read.operations.size(), 3U);
    EXPECT_EQ(read.operations[1].code, 6U);
    EXPECT_EQ(read.operations[1].request, "odd \xE9");
    EXPECT_EQ(read.operations[1].status, 36871U);
    EXPECT_EQ(read.operations[2].completionCode, 201);
    EXPECT_TRUE(read.operations[2].isIncomplete);
    EXPECT_EQ(read.operations, plan.operations);
    EXPECT_EQ(TextFromHost(read.before), TextFromHost(plan.before));
    EXPECT_EQ(read.after.name, "another");
    EXPECT_TRUE(read.restartRequired);
    EXPECT_FALSE(read.isUsed);
}

TEST(Plan, HoldsNoSecrets) {
    Plan plan = SamplePlan();
    plan.after.initiator.login.targetSecret = "example-secret";
    plan.after.initiator.login.targetChapName = "storage";
    const std::string text = TextFromPlan(plan);
    EXPECT_EQ(text.find("example-secret"), std::string::npos);
    EXPECT_NE(text.find("storage"), std::string::npos);
    EXPECT_EQ(PlanFromText(text).after.initiator.login.targetSecret, "");
}

// The text of the plan with one piece replaced, which has to be there.
std::string Damaged(const std::string& piece, const std::string& replacement) {
    std::string text = TextFromPlan(SamplePlan());
    const std::size_t at = text.find(piece);
    EXPECT_NE(at, std::string::npos) << piece;
    return text.replace(at, piece.size(), replacement);
}

std::string ReasonFor(const std::string& text) {
    try {
        PlanFromText(text);
    } catch (const tavrolib::ShapeError& error) {
        return error.what();
    }
    return "accepted";
}

TEST(Plan, TellsThePlaceOfWhatIsWrong) {
    EXPECT_EQ(ReasonFor("[]"), "an object is wanted, not an array");
    EXPECT_EQ(ReasonFor(Damaged("\"format\": 1", "\"format\": 2")),
              "the plan has format 2; this tool reads format 1");
    EXPECT_EQ(ReasonFor(Damaged("\"format\": 1", "\"format\": 2, \"news\": []")),
              "the plan has format 2; this tool reads format 1");
    EXPECT_EQ(ReasonFor(Damaged("\"completion_code\": 201", "\"completion_code\": \"201\"")),
              "operations[2].completion_code: a number is wanted, not a text");
    EXPECT_EQ(ReasonFor(Damaged("\"used\": false", "\"spent\": false")), "member 6 is unknown");
    EXPECT_EQ(ReasonFor(Damaged("\"used\": false", "\"used\": 1")),
              "used: true or false is wanted, not a number");
    EXPECT_EQ(ReasonFor(Damaged("\"operation\": 6", "\"operation\": -6")),
              "operations[1].operation: a whole number from 0 to 4294967295 is wanted");
    EXPECT_EQ(ReasonFor(Damaged("\"name\": \"another\"", "\"name\": 5")),
              "after.name: a text is wanted, not a number");
}

}  // namespace
}  // namespace tavrohost
