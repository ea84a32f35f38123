#include "platform/locale.h"

#include <clocale>

namespace tavro::platform {

std::string UserLocaleName() {
    const char* name = std::setlocale(LC_ALL, "");
    return name == nullptr ? std::string() : std::string(name);
}

}  // namespace tavro::platform
