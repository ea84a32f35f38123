#pragma once

#include <string_view>

#include "library/messages/catalogue.h"

namespace tavrolib {

// The language of a locale name as C libraries spell them: "ja_JP.UTF-8", "Japanese_Japan.932",
// "Chinese (Simplified)_China.936", "zh-CN", or a composite "LC_CTYPE=ja_JP.UTF-8;...", whose
// character type counts; any of them may be cut short. Every name that is neither Japanese nor
// Chinese is English.
Language LanguageOfLocale(std::wstring_view localeName);

}  // namespace tavrolib
