#include "twin/platform/arguments.h"

namespace tavrohost::platform {

std::vector<std::string> Utf8Arguments(int count, const char* const* entryValues) {
    return {entryValues, entryValues + count};
}

}  // namespace tavrohost::platform
