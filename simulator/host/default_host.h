#pragma once

#include <string_view>

namespace tavrosim {

// The text of default_host.json, which the build puts into the library.
std::string_view DefaultHostText();

}  // namespace tavrosim
