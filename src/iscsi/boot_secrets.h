#pragma once

#include "console/wipe.h"
#include "tavroapi/boot_records.h"

namespace tavro {

// Wipes the secrets of a boot configuration that it does not own when the scope is left.
class BootSecretsGuard {
  public:
    explicit BootSecretsGuard(tavroapi::IscsiBootConfig& guardedConfig) : config(guardedConfig) {}
    ~BootSecretsGuard() {
        for (const std::size_t secret : tavroapi::IscsiBootConfig::SecretPositions) {
            console::WipeSecret(config.texts[secret]);
        }
    }
    BootSecretsGuard(const BootSecretsGuard&) = delete;
    BootSecretsGuard& operator=(const BootSecretsGuard&) = delete;

  private:
    tavroapi::IscsiBootConfig& config;
};

}  // namespace tavro
