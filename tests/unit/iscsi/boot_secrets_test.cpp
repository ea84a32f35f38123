#include "iscsi/boot_secrets.h"

#include <gtest/gtest.h>

namespace tavro {
namespace {

TEST(BootSecretsGuard, WipesTheSecretsAndNothingElse) {
    tavroapi::IscsiBootConfig config;
    for (std::size_t i = 0; i < config.texts.size(); ++i) {
        config.texts[i] = "T" + std::to_string(i);
    }
    const char* const firstSecret = config.texts[tavroapi::iscsi_boot::ChapSecret].data();
    { const BootSecretsGuard guard(config); }
    for (std::size_t i = 0; i < config.texts.size(); ++i) {
        const bool isSecret = i == 13 || i == 20 || i == 27;
        EXPECT_EQ(config.texts[i], isSecret ? "" : "T" + std::to_string(i));
    }
    EXPECT_EQ(firstSecret[1], '\0');
}

}  // namespace
}  // namespace tavro
