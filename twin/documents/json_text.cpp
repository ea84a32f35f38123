#include "twin/documents/json_text.h"

#include <nlohmann/json.hpp>

namespace tavrohost {

std::string JsonText(const tavrolib::Json& json) {
    constexpr int Indent = 2;
    return json.dump(Indent) + '\n';
}

}  // namespace tavrohost
