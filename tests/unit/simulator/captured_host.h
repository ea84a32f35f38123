#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "library/calls/call.h"
#include "simulator/host/host_file.h"
#include "simulator/model/serve.h"
#include "tavroapi/operations.h"

// Playing a captured host in a test.
namespace tavrosim_test {

// A host with one port that has a function of each kind, one portal and one target.
inline constexpr const char* MadeHost = R"({
  "name": "made",
  "initiator": {"name": "iqn.example:made"},
  "isnsServers": ["192.0.2.1", "192.0.2.2"],
  "adapters": [{"name": "Model X", "number": 0, "type": "CNA", "partitionState": 1, "ports": [
    {"name": "Port 1", "functions": [
      {"number": 0, "mac": "02-00-5E-10-00-00", "ethernet": {"interface": "eth0"}},
      {"number": 2, "mac": "02-00-5E-10-00-02", "iscsi": {
        "tcpIp": {"dhcp": "No", "address": "192.0.2.7"},
        "storage": {
          "portals": [{"address": "192.0.2.20"}],
          "targets": [{"name": "t", "portal": {"address": "192.0.2.20"}, "discovery": "Static"}],
          "sessions": [{"id": 1, "target": "t", "portal": {"address": "192.0.2.20"}}],
          "lastSessionId": 1,
          "statistics": {"bytesSent": 10, "logins": 3, "logouts": 2}}}},
      {"number": 4, "mac": "02-00-5E-10-00-04", "fcoe": {
        "portWwn": "10:00:02:00:5E:10:00:04", "nodeWwn": "20:00:02:00:5E:10:00:04",
        "statistics": {"transmittedFrames": 10}}}]}]}],
  "iscsiTargets": [{"name": "t", "portals": [{"address": "192.0.2.20"}]}]
})";

// A host that plays answers, and what it says.
class CapturedHostTest : public testing::Test {
  protected:
    static constexpr const char* EthernetMac = "02-00-5E-10-00-00";
    static constexpr const char* IscsiMac = "02-00-5E-10-00-02";
    static constexpr const char* FcoeWwn = "10:00:02:00:5E:10:00:04";

    // Starts to play `answers`, the elements of a JSON array, over the host above.
    void Play(const std::string& answers) {
        host = tavrosim::CapturedHost(tavrosim::HostFromText(MadeHost),
                                      tavrolib::Json::parse('[' + answers + ']'));
    }

    tavrolib::Outcome Serve(tavrolib::Call call) {
        tavrosim::Host copy = host;
        tavrolib::Outcome outcome = ServeCall(copy, call);
        if (outcome.IsDone()) {
            host = std::move(copy);
        }
        return outcome;
    }

    template <tavroapi::OperationCode Code>
    static tavrolib::Call CallOf(const std::string& request, void* input, void* output) {
        tavrolib::Call call;
        call.entryPoint = tavrolib::EntryPoint::DoOperation;
        call.operation = static_cast<std::uint32_t>(Code);
        call.described = tavrolib::FindOperation(*call.operation);
        call.request = request;
        call.input = input;
        call.output = output;
        return call;
    }

    template <tavroapi::OperationCode Code>
    tavrolib::Outcome Perform(const std::string& request, void* input = nullptr,
                              void* output = nullptr) {
        return Serve(CallOf<Code>(request, input, output));
    }

    // What an operation without refusals reads.
    template <tavroapi::OperationCode Code>
    tavroapi::OutputOf<Code> Read(const std::string& request, void* input = nullptr) {
        tavroapi::OutputOf<Code> record{};
        EXPECT_EQ((Perform<Code>(request, input, &record).status), 0U);
        return record;
    }

    template <tavrolib::EntryPoint Entry>
    tavrolib::FilledType<Entry> Ask(const char* request = nullptr) {
        tavrolib::FilledType<Entry> filled{};
        tavrolib::Call call;
        call.entryPoint = Entry;
        if (request != nullptr) {
            call.request = request;
        }
        call.output = &filled;
        EXPECT_EQ(Serve(call).status, 0U);
        return filled;
    }

    tavrosim::Function& FunctionAt(std::size_t index) {
        return host.adapters[0].ports[0].functions[index];
    }

    tavrosim::Host host;
};

}  // namespace tavrosim_test
