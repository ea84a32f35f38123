#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tavroapi/record.h"

namespace tavroapi_test {

using Names = std::vector<std::string>;

// The names of a record's fields in contract order, one for each position.
template <class Record>
Names FieldNames() {
    const Record record{};
    Names names;
    tavroapi::ForEachField(
        record, [&](std::size_t, std::string_view name, const auto&) { names.emplace_back(name); });
    return names;
}

}  // namespace tavroapi_test
