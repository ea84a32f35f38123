#include "xml/prolog.h"

#include <algorithm>
#include <array>

namespace tavro::xml {
namespace {

constexpr std::wstring_view DeclarationOpening = L"<?xml";

bool IsDigit(wchar_t unit) {
    return unit >= L'0' && unit <= L'9';
}

bool IsLetter(wchar_t unit) {
    return (unit >= L'a' && unit <= L'z') || (unit >= L'A' && unit <= L'Z');
}

bool IsVersion(std::wstring_view value) {
    return value.size() > 2 && value.starts_with(L"1.") &&
           std::ranges::all_of(value.substr(2), IsDigit);
}

bool IsEncodingName(std::wstring_view value) {
    return !value.empty() && IsLetter(value.front()) &&
           std::ranges::all_of(value.substr(1), [](wchar_t unit) {
               return IsLetter(unit) || IsDigit(unit) || unit == L'.' || unit == L'_' ||
                      unit == L'-';
           });
}

bool IsYesOrNo(std::wstring_view value) {
    return value == L"yes" || value == L"no";
}

// Steps over `name="value"` in the XML declaration. The name is known to be there.
bool SkipSetting(Scanner& scanner, std::wstring_view name, bool (*isValid)(std::wstring_view)) {
    scanner.at += name.size();
    scanner.SkipSpace();
    if (*scanner.at != L'=') {
        return scanner.FailUnexpected(XmlError::MalformedDeclaration);
    }
    ++scanner.at;
    scanner.SkipSpace();
    const Scanner::Mark literal = scanner.Here();
    if (!scanner.SkipLiteral(XmlError::MalformedDeclaration)) {
        return false;
    }
    const auto size = static_cast<std::size_t>(scanner.at - literal.at);
    return isValid({literal.at + 1, size - 2}) ||
           scanner.Fail(XmlError::MalformedDeclaration, literal);
}

// Steps over the part between the DOCTYPE's name and its brackets, which may be missing.
bool SkipExternalId(Scanner& scanner) {
    const bool isPublic = scanner.Sees(L"PUBLIC");
    if (!isPublic && !scanner.Sees(L"SYSTEM")) {
        return true;
    }
    scanner.at += 6;
    for (int literals = isPublic ? 2 : 1; literals > 0; --literals) {
        if (!scanner.SkipSpace()) {
            return scanner.FailUnexpected(XmlError::MalformedDoctype);
        }
        if (!scanner.SkipLiteral(XmlError::MalformedDoctype)) {
            return false;
        }
    }
    scanner.SkipSpace();
    return true;
}

// Steps over a declaration in the brackets, from its "<!" on.
bool SkipMarkupDeclaration(Scanner& scanner) {
    static constexpr std::array<std::wstring_view, 4> Keywords{L"<!ELEMENT", L"<!ATTLIST",
                                                               L"<!ENTITY", L"<!NOTATION"};
    const auto* const keyword = std::ranges::find_if(
        Keywords, [&scanner](std::wstring_view candidate) { return scanner.Sees(candidate); });
    if (keyword == Keywords.end()) {
        return scanner.FailUnexpected(XmlError::MalformedDoctype);
    }
    scanner.at += keyword->size();
    if (!scanner.SkipSpace()) {
        return scanner.FailUnexpected(XmlError::MalformedDoctype);
    }
    while (*scanner.at != L'>') {
        if (*scanner.at == L'"' || *scanner.at == L'\'') {
            if (!scanner.SkipLiteral(XmlError::MalformedDoctype)) {
                return false;
            }
        } else if (scanner.AtEnd() || *scanner.at == L'<') {
            return scanner.FailUnexpected(XmlError::MalformedDoctype);
        } else if (!scanner.SkipSpace() && !scanner.SkipCharacter()) {
            return false;
        }
    }
    ++scanner.at;
    return true;
}

// Steps over one thing in the brackets that is not a blank.
bool SkipInBrackets(Scanner& scanner) {
    const Scanner::Mark begin = scanner.Here();
    if (*scanner.at == L'%') {
        ++scanner.at;
        if (!scanner.SkipName()) {
            return false;
        }
        if (*scanner.at != L';') {
            return scanner.FailUnexpected(XmlError::MalformedDoctype);
        }
        ++scanner.at;
        return true;
    }
    if (scanner.Sees(L"<!--")) {
        scanner.at += 4;
        return scanner.SkipComment(begin) != nullptr;
    }
    if (scanner.Sees(L"<?")) {
        scanner.at += 2;
        return scanner.SkipInstruction(begin);
    }
    return SkipMarkupDeclaration(scanner);
}

// Steps over everything up to the closing marker.
bool SkipInDoctype(Scanner& scanner) {
    if (!scanner.SkipSpace()) {
        return scanner.FailUnexpected(XmlError::MalformedDoctype);
    }
    if (!scanner.SkipName()) {
        return false;
    }
    if (scanner.SkipSpace() && !SkipExternalId(scanner)) {
        return false;
    }
    if (*scanner.at == L'[') {
        ++scanner.at;
        scanner.SkipSpace();
        while (*scanner.at != L']') {
            if (!SkipInBrackets(scanner)) {
                return false;
            }
            scanner.SkipSpace();
        }
        ++scanner.at;
        scanner.SkipSpace();
    }
    return *scanner.at == L'>' || scanner.FailUnexpected(XmlError::MalformedDoctype);
}

}  // namespace

bool SeesDeclaration(const Scanner& scanner) {
    if (!scanner.Sees(DeclarationOpening)) {
        return false;
    }
    const CharacterHere next = ReadCharacter(scanner.at + DeclarationOpening.size());
    return !IsNamePart(next.character);
}

bool SkipDeclaration(Scanner& scanner) {
    scanner.at += DeclarationOpening.size();
    if (!scanner.SkipSpace() || !scanner.Sees(L"version")) {
        return scanner.FailUnexpected(XmlError::MalformedDeclaration);
    }
    if (!SkipSetting(scanner, L"version", IsVersion)) {
        return false;
    }
    bool separated = scanner.SkipSpace();
    if (separated && scanner.Sees(L"encoding")) {
        if (!SkipSetting(scanner, L"encoding", IsEncodingName)) {
            return false;
        }
        separated = scanner.SkipSpace();
    }
    if (separated && scanner.Sees(L"standalone")) {
        if (!SkipSetting(scanner, L"standalone", IsYesOrNo)) {
            return false;
        }
        scanner.SkipSpace();
    }
    if (!scanner.Sees(L"?>")) {
        return scanner.FailUnexpected(XmlError::MalformedDeclaration);
    }
    scanner.at += 2;
    return true;
}

wchar_t* SkipDoctype(Scanner& scanner, const Scanner::Mark& opening) {
    if (!SkipInDoctype(scanner)) {
        if (scanner.AtEnd()) {
            scanner.Fail(XmlError::UnclosedDoctype, opening);
        }
        return nullptr;
    }
    return scanner.at++;
}

}  // namespace tavro::xml
