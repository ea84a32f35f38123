#include <clocale>
#include <cstdlib>

#include "platform/locale.h"

namespace tavro::platform {
namespace {

// Sets a category to the user's locale for it, or else to the one that LANG names, and returns that
// locale's name. Null when the system has neither; the category stays as it was.
const char* SetCategory(int category) {
    if (const char* const name = std::setlocale(category, "")) {
        return name;
    }
    const char* const language = std::getenv("LANG");
    return language == nullptr ? nullptr : std::setlocale(category, language);
}

}  // namespace

std::string UserLocaleName() {
    if (const char* const name = std::setlocale(LC_ALL, "")) {
        return name;
    }
    // One category whose locale is not installed must not cost the user the others.
    for (const int category : {LC_CTYPE, LC_COLLATE, LC_MONETARY, LC_NUMERIC, LC_TIME}) {
        SetCategory(category);
    }
    const char* const messages = SetCategory(LC_MESSAGES);
    return messages == nullptr ? std::string() : std::string(messages);
}

}  // namespace tavro::platform
