#include "xml/scanner.h"

#include <algorithm>
#include <array>
#include <cwchar>

namespace tavro::xml {
namespace {

struct Entity {
    std::wstring_view name;
    wchar_t character;
};

constexpr std::array<Entity, 5> Entities{{
    {L"amp", L'&'},
    {L"lt", L'<'},
    {L"gt", L'>'},
    {L"quot", L'"'},
    {L"apos", L'\''},
}};

// The value of a digit in either base; the base or more for another character.
constexpr char32_t DigitValue(char32_t character) {
    if (character >= U'0' && character <= U'9') {
        return character - U'0';
    }
    if (character >= U'a' && character <= U'f') {
        return character - U'a' + 10;
    }
    if (character >= U'A' && character <= U'F') {
        return character - U'A' + 10;
    }
    return 16;
}

}  // namespace

bool Scanner::Fail(XmlError error, const Mark& place) {
    results_.error = static_cast<std::uint32_t>(error);
    results_.line = place.line;
    results_.column = static_cast<std::size_t>(place.at - place.lineStart) + 1;
    return false;
}

bool Scanner::FailUnexpected(XmlError error) {
    if (AtEnd()) {
        return Fail(XmlError::UnexpectedEnd);
    }
    return Fail(IsCharacter(ReadCharacter(at).character) ? error : XmlError::InvalidCharacter);
}

bool Scanner::Sees(std::wstring_view expected) const {
    return std::wcsncmp(at, expected.data(), expected.size()) == 0;
}

bool Scanner::SkipCharacter() {
    const CharacterHere here = ReadCharacter(at);
    if (!IsCharacter(here.character)) {
        return Fail(XmlError::InvalidCharacter);
    }
    Step(here);
    return true;
}

bool Scanner::SkipUnusualName() {
    const CharacterHere first = ReadCharacter(at);
    if (!IsNameStart(first.character)) {
        return FailUnexpected(XmlError::InvalidName);
    }
    Step(first);
    return SkipRestOfName();
}

bool Scanner::SkipRestOfName() {
    for (;;) {
        const CharacterHere here = ReadCharacter(at);
        if (!IsNamePart(here.character)) {
            return true;
        }
        Step(here);
    }
}

bool Scanner::SkipLiteral(XmlError whenMissing) {
    if (*at != L'"' && *at != L'\'') {
        return FailUnexpected(whenMissing);
    }
    const Mark opening = Here();
    const wchar_t quote = *at++;
    return SkipPast({&quote, 1}, XmlError::UnclosedValue, opening) != nullptr;
}

bool Scanner::ReadReference(Shortener& text) {
    const Mark begin = Here();
    ++at;
    if (*at != L'#') {
        const wchar_t* const nameBegin = at;
        if (!SkipName() || *at != L';') {
            return Fail(XmlError::MalformedReference, begin);
        }
        const std::wstring_view name(nameBegin, static_cast<std::size_t>(at - nameBegin));
        ++at;
        const auto* const entity = std::ranges::find(Entities, name, &Entity::name);
        if (entity != Entities.end()) {
            text.Replace(begin.at, entity->character, at);
        }
        return true;
    }
    ++at;
    const char32_t base = *at == L'x' ? 16 : 10;
    at += *at == L'x' ? 1 : 0;
    const wchar_t* const digits = at;
    char32_t value = 0;
    for (; DigitValue(UnitValue(*at)) < base; ++at) {
        // Beyond the last character the number only has to stay there.
        value = std::min<char32_t>(value * base + DigitValue(UnitValue(*at)), 0x110000);
    }
    if (at == digits || *at != L';') {
        return Fail(XmlError::MalformedReference, begin);
    }
    ++at;
    return IsCharacter(value) || Fail(XmlError::InvalidCharacterReference, begin);
}

wchar_t* Scanner::SkipPast(std::wstring_view closing, XmlError whenMissing, const Mark& opening) {
    for (;;) {
        while (*at != closing.front() && IsAscii(*at, PlainInRegion)) {
            ++at;
        }
        if (*at == closing.front() && Sees(closing)) {
            wchar_t* const found = at;
            at += closing.size();
            return found;
        }
        if (AtEnd()) {
            Fail(whenMissing, opening);
            return nullptr;
        }
        if (*at == L'\n' || *at == L'\r') {
            SkipLineEnd();
        } else if (!SkipCharacter()) {
            return nullptr;
        }
    }
}

wchar_t* Scanner::SkipComment(const Mark& opening) {
    wchar_t* const dashes = SkipPast(L"--", XmlError::UnclosedComment, opening);
    if (dashes == nullptr) {
        return nullptr;
    }
    if (AtEnd()) {
        Fail(XmlError::UnclosedComment, opening);
        return nullptr;
    }
    if (*at != L'>') {
        at = dashes;
        Fail(XmlError::DashesInComment);
        return nullptr;
    }
    ++at;
    return dashes;
}

bool Scanner::SkipInstruction(const Mark& opening) {
    const Mark target = Here();
    if (!SkipName()) {
        return false;
    }
    const std::wstring_view name(target.at, static_cast<std::size_t>(at - target.at));
    if (name == L"xml") {
        return Fail(XmlError::MisplacedDeclaration, opening);
    }
    if (name.size() == 3 && (name[0] == L'x' || name[0] == L'X') &&
        (name[1] == L'm' || name[1] == L'M') && (name[2] == L'l' || name[2] == L'L')) {
        return Fail(XmlError::ReservedTarget, target);
    }
    if (Sees(L"?>")) {
        at += 2;
        return true;
    }
    if (!SkipSpace()) {
        return FailUnexpected(XmlError::MalformedInstruction);
    }
    return SkipPast(L"?>", XmlError::UnclosedInstruction, opening) != nullptr;
}

}  // namespace tavro::xml
