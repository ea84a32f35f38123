#include "twin/run/secrets.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "simulator/host/host_file.h"

namespace tavrohost {
namespace {

tavrosim::Host HostWithSecret(const std::string& secret) {
    tavrosim::Host host = tavrosim::HostFromText(R"({"name": "small", "adapters": []})");
    host.initiator.login.targetChapName = "storage";
    host.initiator.login.targetSecret = secret;
    return host;
}

TEST(Secrets, AreTakenOutOfAHost) {
    const auto login = WithoutSecrets(HostWithSecret("example-secret")).initiator.login;
    EXPECT_EQ(login.targetSecret, "");
    EXPECT_EQ(login.targetChapName, "storage");
}

TEST(Secrets, ThatACommandGaveAreTakenOutAndOthersStay) {
    const auto before = HostWithSecret("old-secret");
    auto after = HostWithSecret("old-secret");
    after.initiator.login.initiatorSecret = "new-secret";
    const auto login = WithoutNewSecrets(after, before).initiator.login;
    EXPECT_EQ(login.targetSecret, "old-secret");
    EXPECT_EQ(login.initiatorSecret, "");
}

TEST(Secrets, OfAHostFileAreListedButForWhatWasCaptured) {
    const auto file = tavrolib::ParseJson(R"({
        "name": "targetSecret",
        "initiator": {"login": {"targetSecret": "first", "targetChapName": "storage"}},
        "iscsiTargets": [{"chap": {"initiatorSecret": "second"}}],
        "captured": {"host": {"initiator": {"login": {"targetSecret": "third"}}}}})");
    EXPECT_EQ(SecretsIn(file), (std::set<std::string>{"first", "second"}));
}

}  // namespace
}  // namespace tavrohost
