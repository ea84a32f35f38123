#pragma once

#include <optional>
#include <string>

#include "library/session/provider.h"
#include "linux/inventory/machine.h"
#include "linux/state/state.h"
#include "linux/system/roots.h"

namespace tavrolinux {

// The library that manages the Linux host it runs on. The machine is looked at when the library is
// initialized.
class LinuxLibrary : public tavrolib::Provider {
  public:
    explicit LinuxLibrary(Roots roots = {});
    std::string EnvironmentPrefix() const override { return "TAVROLINUX_"; }
    std::wstring Description() const override;
    tavrolib::Outcome Open() override;
    tavrolib::Outcome Serve(const tavrolib::Call& call) override;

  private:
    Roots roots_;
    StateStore state_;
    std::optional<Machine> machine_;
};

}  // namespace tavrolinux
