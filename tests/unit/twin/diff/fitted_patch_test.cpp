#include "twin/diff/fitted_patch.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>
#include <string>

#include "simulator/host/default_host.h"
#include "simulator/host/host_file.h"
#include "tests/unit/twin/diff/mutation.h"
#include "twin/diff/difference.h"

namespace tavrohost {
namespace {

using tavrohost_test::JsonOf;
using tavrolib::Json;
using tavrosim::Host;

// Hosts as people write them: with what is not as usual.
constexpr const char* ShortHost = R"({"name": "h", "comment to keep": [1], "adapters": [
    {"name": "Tavro CNA 4610K", "number": 0, "type": "CNA", "partitionState": 3, "card": {},
     "partitions": {"mode": "MF", "functions": [{"personality": "iSCSI"}]},
     "ports": [{"name": "Port 1", "functions": [
        {"number": 0, "mac": "02-00-5E-10-00-00", "iscsi": {}}]}]}]})";
constexpr const char* FormerHost = R"({"name": "h", "adapters": [
    {"name": "Tavro CNA 4610K", "number": 0, "type": "CNA", "partitionState": 1,
     "ports": [{"name": "Port 1", "functions": [
        {"number": 0, "mac": "02-00-5E-10-00-00",
         "iscsi": {"hardware": {"driverName": "bnx2i", "linkSpeed": "10 Gbit/s"}}}]}]}]})";

Host HostOf(Json document) {
    document.erase("comment to keep");
    return tavrosim::HostFromText(document.dump());
}

// The fitted patch by which the document becomes one of the host that `change` makes of its host,
// after a look whether it does.
template <class Change>
Json PatchFor(const Json& document, const Change& change) {
    const Host before = HostOf(document);
    Host after = before;
    change(after);
    const DiffOptions everything{.counters = true, .withSecrets = true};
    Json patch = FittedPatch(document, before, DifferenceOf(before, after, everything).patch);
    EXPECT_EQ(JsonOf(HostOf(document.patch(patch))), JsonOf(after)) << patch;
    return patch;
}

tavrosim::Function& FunctionOf(Host& host) {
    return host.adapters[0].ports[0].functions[0];
}

TEST(FittedPatch, AddsAMemberThatIsLeftOutWithAllAboveIt) {
    const Json document = Json::parse(ShortHost);
    const Json patch = PatchFor(
        document, [](Host& host) { FunctionOf(host).iscsi->storage.portals.emplace_back(); });
    ASSERT_EQ(patch.size(), 2U);
    EXPECT_EQ(patch[0].at("path"), "/adapters/0/ports/0/functions/0/iscsi/storage");
    EXPECT_EQ(patch[1].at("path"), "/adapters/0/ports/0/functions/0/iscsi/storage/portals/0");
    EXPECT_TRUE(document.patch(patch).contains("comment to keep"));
}

TEST(FittedPatch, FillsAnArrayUpToTheElementThatChanges) {
    const Json patch = PatchFor(Json::parse(ShortHost), [](Host& host) {
        host.adapters[0].partitions->functions[2].lowerLimit = "10";
    });
    const Json elements = Json::parse(ShortHost).patch(patch).at(
        Json::json_pointer("/adapters/0/partitions/functions"));
    EXPECT_EQ(elements[0], Json::parse(R"({"personality": "iSCSI"})"));
    EXPECT_EQ(elements[2].at("lowerLimit"), "10");
}

TEST(FittedPatch, IsEmptyWhereNothingDiffers) {
    EXPECT_EQ(PatchFor(Json::parse(ShortHost), [](Host&) {}), Json::array());
    EXPECT_EQ(PatchFor(Json::parse(FormerHost), [](Host&) {}), Json::array());
}

TEST(FittedPatch, WritesAFormerFileAnew) {
    const auto rename = [](Host& host) { host.name = "other"; };
    const Json patched = Json::parse(FormerHost).patch(PatchFor(Json::parse(FormerHost), rename));
    EXPECT_EQ(patched.dump().find("driverName"), std::string::npos);
    Json stated = Json::parse(ShortHost);
    stated["adapters"][0]["ports"][0]["functions"][0]["iscsi"]["hardware"]["driverName"] = "d";
    EXPECT_EQ(stated.patch(PatchFor(stated, rename)).dump().find("driverName"), std::string::npos);
}

TEST(FittedPatch, MakesOneHostOfTheOtherWhateverIsLeftOut) {
    const Json document = Json::parse(tavrosim::DefaultHostText());
    std::mt19937 random(815);
    int done = 0;
    for (int round = 0; round < 50; ++round) {
        const Host mutated = tavrohost_test::Mutated(HostOf(document), 1 + round / 5, random);
        Host after;
        try {
            after = tavrosim::HostFromText(tavrosim::TextFromHost(mutated));
        } catch (const tavrolib::ShapeError&) {
            continue;  // the patched file could not be read
        }
        PatchFor(document, [&after](Host& host) { host = after; });
        ++done;
    }
    EXPECT_GT(done, 10);
}

}  // namespace
}  // namespace tavrohost
