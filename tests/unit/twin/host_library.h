#pragma once

#include <optional>

#include "simulator/host/host.h"
#include "simulator/model/serve.h"
#include "twin/capture/library_caller.h"

namespace tavrohost_test {

// A library that plays a host in this process, without files.
class HostLibrary : public tavrohost::LibraryCaller {
  public:
    explicit HostLibrary(tavrosim::Host& host) : host_(host) {}

    std::optional<std::uint32_t> Perform(const tavrolib::Call& call) override {
        const tavrolib::Outcome outcome = tavrosim::ServeCall(host_, call);
        if (!outcome.IsDone()) {
            error_ = outcome.ErrorIn(tavrolib::Language::English);
        }
        return outcome.status;
    }

    std::optional<tavroapi::ErrorRecord> LastError() override { return error_; }

  private:
    tavrosim::Host& host_;
    std::optional<tavroapi::ErrorRecord> error_;
};

}  // namespace tavrohost_test
