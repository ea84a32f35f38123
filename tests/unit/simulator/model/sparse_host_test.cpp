// A host of which next to nothing is known takes every operation.
#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>

#include "simulator/host/host_file.h"
#include "simulator/host/restart.h"
#include "simulator/model/serve.h"
#include "tavroapi/described_operations.h"

namespace tavrosim {
namespace {

using tavroapi::OperationCode;
using tavrolib::Call;
using tavrolib::Json;

// One function of each kind, and texts that are odd where they may be.
constexpr const char* SparseHost = R"({
  "name": "", "initiator": {"name": "\uf7e9"}, "isnsServers": [""],
  "adapters": [{"name": "", "number": 4294967295, "type": "?", "partitionState": 9, "ports": [
    {"name": "", "functions": [
      {"number": 4294967295, "mac": "FF-FF-FF-FF-FF-FF", "ethernet": {"interface": ""}},
      {"number": 7, "mac": "02-00-5E-10-00-02", "iscsi": {
        "tcpIp": {"address": "no address", "vlanId": "?"},
        "storage": {"portals": [{"address": "", "port": ""}],
                    "targets": [{"name": "t", "portal": {"address": "?"}, "discovery": ""}],
                    "sessions": [{"id": 4294967295, "target": "u", "portal": {"address": ""}}]}}},
      {"number": 7, "mac": "02-00-5E-10-00-04", "fcoe": {
        "portWwn": "10:00:02:00:5E:10:00:04", "nodeWwn": "20:00:02:00:5E:10:00:04"}}]}]},
    {"name": "no port", "number": 0, "type": "CNA", "partitionState": 3, "ports": []}],
  "fcoeFabric": {"fcMap": "?"}
})";

constexpr const char* SparseRequests[] = {"", "FF-FF-FF-FF-FF-FF", "02-00-5E-10-00-02",
                                          "10:00:02:00:5E:10:00:04"};

template <class Input>
std::shared_ptr<void> EmptyInput() {
    if constexpr (std::same_as<Input, tavroapi::NoRecord>) {
        return nullptr;
    } else if constexpr (std::same_as<Input, tavroapi::CharacterString>) {
        return std::make_shared<char>('\0');
    } else if constexpr (std::same_as<Input, tavroapi::TargetLoginRecord>) {
        const auto placed = std::make_shared<tavroapi::PlacedTargetLogin>();
        return {placed, &placed->record};
    } else {
        return std::make_shared<Input>();
    }
}

// Serves the operation on a copy of the host for each request; what is done leaves a host that can
// be read again, also after a restart.
template <OperationCode Code>
void ServeOn(const Host& host) {
    using Output = tavroapi::OutputOf<Code>;
    for (const char* const request : SparseRequests) {
        Host copy = host;
        const auto input = EmptyInput<tavroapi::InputOf<Code>>();
        Output output{};
        Call call;
        call.entryPoint = tavrolib::EntryPoint::DoOperation;
        call.operation = static_cast<std::uint32_t>(Code);
        call.described = tavrolib::FindOperation(*call.operation);
        call.request = request;
        call.input = input.get();
        call.output = &output;
        if (ServeCall(copy, call).IsDone()) {
            Restart(copy);
            EXPECT_NO_THROW(HostFromText(TextFromHost(copy))) << call.described->name;
        }
    }
}

template <OperationCode... Codes>
void ServeAllOn(tavroapi::OperationList<Codes...>, const Host& host) {
    (ServeOn<Codes>(host), ...);
}

TEST(SparseHost, TakesEveryOperation) {
    const Host host = HostFromText(SparseHost);
    ServeAllOn(tavroapi::DescribedOperations{}, host);
    ServeAllOn(tavroapi::DescribedOperations{}, CapturedHost(host, Json::array()));
}

}  // namespace
}  // namespace tavrosim
