#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tavrohost::platform {

// The value of the environment variable in UTF-8 (outside Windows its bytes as they are); nothing
// when it is unset.
std::optional<std::string> TextVariable(const std::string& name);

// Sets the environment variable of this process, for libraries that it loads as well.
void SetVariable(const std::string& name, const std::filesystem::path& value);

// Takes the environment variable away.
void UnsetVariable(const std::string& name);

}  // namespace tavrohost::platform
