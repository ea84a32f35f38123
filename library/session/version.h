#pragma once

#include <string_view>

namespace tavrolib {

// The version of the libraries, which is that of the whole product.
extern const std::wstring_view LibraryVersion;

}  // namespace tavrolib
