#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "library/session/provider.h"
#include "simulator/script/script.h"
#include "simulator/store/store.h"

namespace tavrosim {

// The library that plays a host: a script's answers come first, then a model of the host, whose
// host file is read when the library is initialized.
class Simulator : public tavrolib::Provider {
  public:
    std::string EnvironmentPrefix() const override { return "TAVROSIM_"; }
    std::wstring Description() const override;
    tavrolib::Outcome Configure() override;
    std::optional<tavrolib::Outcome> Intercept(const tavrolib::Call& call) override;
    tavrolib::Outcome Open() override;
    tavrolib::Outcome Serve(const tavrolib::Call& call) override;
    std::optional<std::wstring> MessageText(tavrolib::Language language,
                                            std::uint32_t id) const override;

  private:
    std::optional<std::filesystem::path> scriptFile_;
    Script script_;
    Store store_{HostPlace::FromEnvironment()};
};

}  // namespace tavrosim
