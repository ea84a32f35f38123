#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tavrohost {

// The kinds of documents whose JSON Schemas are published, such as "host".
std::vector<std::string> SchemaNames();

// The schema of that name as text; the name is one of SchemaNames.
std::string_view SchemaText(std::string_view name);

}  // namespace tavrohost
