#include "twin/platform/environment.h"

#include <cstdlib>

namespace tavrohost::platform {

std::optional<std::string> TextVariable(const std::string& name) {
    const char* const value = std::getenv(name.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

void SetVariable(const std::string& name, const std::filesystem::path& value) {
    setenv(name.c_str(), value.c_str(), 1);
}

void UnsetVariable(const std::string& name) {
    unsetenv(name.c_str());
}

}  // namespace tavrohost::platform
