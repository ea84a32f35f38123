#pragma once

#include <string>

#include "library/json/json.h"

namespace tavrohost {

// The text of a JSON document as tavrohost prints it: indented, with a line end.
std::string JsonText(const tavrolib::Json& json);

}  // namespace tavrohost
