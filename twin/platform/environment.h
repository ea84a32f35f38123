#pragma once

#include <filesystem>
#include <string>

namespace tavrohost::platform {

// Puts the value of the environment variable in UTF-8 (outside Windows its bytes as they are) in
// the place of `value`, and leaves no other copy of it behind; false when it is unset. What `value`
// held before is not wiped.
bool ReadVariable(const std::string& name, std::string& value);

// Sets the environment variable of this process, for libraries that it loads as well.
void SetVariable(const std::string& name, const std::filesystem::path& value);

// Takes the environment variable away.
void UnsetVariable(const std::string& name);

}  // namespace tavrohost::platform
