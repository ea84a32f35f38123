#include "library/messages/language.h"

#include <string>

namespace tavrolib {
namespace {

struct LanguageName {
    std::wstring_view name;
    Language language;
};

constexpr LanguageName LanguageNames[] = {
    {L"ja", Language::Japanese},
    {L"japanese", Language::Japanese},
    {L"zh", Language::Chinese},
    {L"chinese", Language::Chinese},
};

}  // namespace

Language LanguageOfLocale(std::wstring_view localeName) {
    constexpr std::wstring_view CharacterType = L"LC_CTYPE=";
    if (const std::size_t start = localeName.find(CharacterType);
        start != std::wstring_view::npos) {
        localeName.remove_prefix(start + CharacterType.size());
    }
    std::wstring language;
    for (const wchar_t character : localeName.substr(0, localeName.find_first_of(L"_-.@ ;"))) {
        const bool upper = character >= L'A' && character <= L'Z';
        language += upper ? static_cast<wchar_t>(character - L'A' + L'a') : character;
    }
    for (const LanguageName& row : LanguageNames) {
        if (row.name == language) {
            return row.language;
        }
    }
    return Language::English;
}

}  // namespace tavrolib
