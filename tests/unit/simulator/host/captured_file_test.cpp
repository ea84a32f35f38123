// The captured part of a host file.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "library/json/place.h"
#include "simulator/answers/captured_answers.h"
#include "simulator/host/host_file.h"
#include "simulator/store/store.h"
#include "unit/library/support.h"

namespace tavrosim {
namespace {

using tavrolib::Json;
using tavrolib::ShapeError;

// A host that was renamed since it was captured. The captured part leaves out what may be left out
// and has members in another order than the library writes them.
constexpr const char* RenamedHost = R"({
  "name": "renamed", "adapters": [],
  "captured": {
    "host": {"adapters": [], "name": "made"},
    "answers": [
      {"output": "real \uf7e9", "status": 0, "call": "GetHostName"},
      {"call": "DoOperation", "operation": 10, "request": "k", "input": "t", "status": 7,
       "error": {"details": "d"}}]
  }
})";

Json Renamed() {
    return Json::parse(RenamedHost);
}

std::string Refusal(const Json& host) {
    try {
        HostFromText(host.dump());
        return "accepted";
    } catch (const ShapeError& error) {
        return error.what();
    }
}

// What is refused when the member at `pointer` is `value`.
std::string RefusalWith(const char* pointer, const Json& value) {
    Json host = Renamed();
    host[Json::json_pointer(pointer)] = value;
    return Refusal(host);
}

TEST(CapturedFile, HoldsTheHostNowAndAsCaptured) {
    const Host host = HostFromText(RenamedHost);
    EXPECT_EQ(host.name, "renamed");
    ASSERT_NE(host.captured, nullptr);
    ASSERT_NE(host.asCaptured, nullptr);
    EXPECT_EQ(host.asCaptured->name, "made");
    EXPECT_EQ(host.asCaptured->captured, host.captured);
    EXPECT_EQ(host.asCaptured->asCaptured, nullptr);
    EXPECT_TRUE(IsCaptured(host));
    EXPECT_FALSE(IsCaptured(DefaultHost()));
}

TEST(CapturedFile, KeepsTheCapturedPartAsItStandsAndLast) {
    Host host = HostFromText(RenamedHost);
    host.name = "renamed again";
    const Json written = Json::parse(TextFromHost(host));
    EXPECT_EQ(written.at("name"), "renamed again");
    EXPECT_EQ(written.at("captured").dump(), Renamed().at("captured").dump());
    EXPECT_EQ(std::prev(written.end()).key(), "captured");
    EXPECT_EQ(TextFromHost(HostFromText(TextFromHost(host))), TextFromHost(host));
}

TEST(CapturedFile, AnOrdinaryHostHasNoCapturedPart) {
    EXPECT_FALSE(Json::parse(TextFromHost(DefaultHost())).contains("captured"));
}

TEST(CapturedFile, IsTheOneOfAHostThatIsMadeToPlayAnswers) {
    const Host made = DefaultHost();
    const Json answers = Renamed()["captured"]["answers"];
    const Host host = CapturedHost(made, answers);
    const Json written = Json::parse(TextFromHost(host));
    EXPECT_EQ(written.at("captured").at("answers").dump(), answers.dump());
    EXPECT_EQ(written.at("captured").at("host"), Json::parse(TextFromHost(made)));
    EXPECT_EQ(host.name, made.name);
    EXPECT_EQ(TextFromHost(HostFromText(TextFromHost(host))), TextFromHost(host));
}

TEST(CapturedFile, MakingOneRefusesWhatTheFileWouldBeRefusedFor) {
    EXPECT_THROW(CapturedHost(DefaultHost(), Json::parse(R"([{"call": "Initialize"}])")),
                 ShapeError);
    Host contradictory = DefaultHost();
    contradictory.adapters.push_back(contradictory.adapters[0]);
    EXPECT_THROW(CapturedHost(contradictory, Json::array()), ShapeError);
}

TEST(CapturedFile, IsKeptByTheStore) {
    const tavrolib_test::Folder folder;
    const auto path = folder / "host.json";
    tavrolib_test::Write(path, RenamedHost);
    Store store({path, false});
    ASSERT_TRUE(store.Load().IsDone());
    const tavrolib::Outcome changed = store.Change([](Host& host) {
        host.name = "changed";
        return tavrolib::Done();
    });
    ASSERT_TRUE(changed.IsDone());
    EXPECT_TRUE(store.RestartHost().IsDone());
    EXPECT_TRUE(IsCaptured(store.Current()));
    const Json written = Json::parse(tavrolib_test::Read(path));
    EXPECT_EQ(written.at("name"), "changed");
    EXPECT_EQ(written.at("captured").dump(), Renamed().at("captured").dump());
}

TEST(CapturedFile, RefusalsNameThePlace) {
    ASSERT_EQ(Refusal(Renamed()), "accepted");
    EXPECT_EQ(RefusalWith("/captured", 5), "captured: an object is wanted, not a number");
    EXPECT_EQ(RefusalWith("/captured/more", 5), "captured: member 3 is unknown");
    EXPECT_EQ(RefusalWith("/captured/answers/1/output", Json::array({"t", "", 5})),
              "captured.answers[1].output[2]: a text is wanted, not a number");
    EXPECT_EQ(RefusalWith("/captured/host", 5), "captured.host: an object is wanted, not a number");
    EXPECT_EQ(RefusalWith("/captured/host", Json::object({{"name", "h"}})),
              R"(captured.host: "adapters" is missing)");
    EXPECT_EQ(RefusalWith("/captured/host/format", 2),
              "captured.host: the file has format 2; this library reads format 1");
    EXPECT_EQ(RefusalWith("/captured/host/captured", Renamed()["captured"]),
              "captured.host: member 3 is unknown");
    const Json adapter{{"name", "A"},
                       {"number", 0},
                       {"type", "CNA"},
                       {"partitionState", 1},
                       {"ports", Json::array()}};
    EXPECT_EQ(RefusalWith("/captured/host/adapters", Json::array({adapter, adapter})),
              "captured.host.adapters[1].name: another adapter has this name");
    EXPECT_EQ(RefusalWith("/adapters", Json::array({adapter, adapter})),
              "adapters[1].name: another adapter has this name");
}

TEST(CapturedFile, AMemberBehindItIsCountedWithIt) {
    Json host = Renamed();
    host["more"] = 5;
    EXPECT_EQ(Refusal(host), "member 4 is unknown");
}

}  // namespace
}  // namespace tavrosim
