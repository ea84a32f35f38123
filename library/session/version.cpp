#include "library/session/version.h"

#include <product_version.h>

namespace tavrolib {

constinit const std::wstring_view LibraryVersion = L"" TAVRO_PRODUCT_VERSION;

}  // namespace tavrolib
