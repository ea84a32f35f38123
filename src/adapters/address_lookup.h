#pragma once

#include <optional>
#include <string>

namespace tavro {

// The address text of the first function whose key text is exactly `keyText`, adapters and their
// ports in list order; nothing when there is none. A query that fails or that the library lacks
// contributes nothing.
std::optional<std::string> FindFunctionAddress(const std::string& keyText);

}  // namespace tavro
