#include "twin/platform/environment.h"

#include <cstdlib>

namespace tavrohost::platform {

bool ReadVariable(const std::string& name, std::string& value) {
    const char* const found = std::getenv(name.c_str());
    if (found != nullptr) {
        value.assign(found);
    }
    return found != nullptr;
}

void SetVariable(const std::string& name, const std::filesystem::path& value) {
    setenv(name.c_str(), value.c_str(), 1);
}

void UnsetVariable(const std::string& name) {
    unsetenv(name.c_str());
}

}  // namespace tavrohost::platform
