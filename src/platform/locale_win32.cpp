#include <clocale>

#include "platform/locale.h"

namespace tavro::platform {

std::string UserLocaleName() {
    const char* const name = std::setlocale(LC_ALL, "");
    return name == nullptr ? std::string() : std::string(name);
}

}  // namespace tavro::platform
