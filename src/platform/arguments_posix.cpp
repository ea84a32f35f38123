#include "platform/arguments.h"

namespace tavro::platform {

ProcessArguments::ProcessArguments(int count, const char* const* entryValues)
    : values_(entryValues, entryValues + count) {}

}  // namespace tavro::platform
