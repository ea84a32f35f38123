#include "import/xml_parser.h"

#include <algorithm>
#include <cwchar>
#include <memory>
#include <new>
#include <stdexcept>
#include <vector>

#include "import/xml_builder.h"
#include "import/xml_prolog.h"
#include "import/xml_scanner.h"
#include "platform/wipe.h"

namespace tavro::xml {
namespace {

class Parser {
  public:
    explicit Parser(Document& document) : scanner(document.text), builder(document) {}

    // False when the text is malformed; Results tells why.
    bool ParseDocument();
    const XmlResults& Results() const { return scanner.Results(); }
    // After success.
    Node* FinishTree() { return builder.Finish(); }

  private:
    bool ParseMarkup(const Scanner::Mark& opening);
    bool ParseBang(const Scanner::Mark& opening);
    bool ParseRegion(XmlRegion region, XmlError whenUnclosed, const Scanner::Mark& opening);
    bool AddRegion(XmlRegion region, const wchar_t* begin, wchar_t* closing);
    bool ParseStartTag(const Scanner::Mark& opening);
    bool ParseAttributes();
    bool ParseValue(const wchar_t*& value);
    bool CheckForDuplicates();
    bool ParseEndTag(const Scanner::Mark& opening);
    bool ParseText(Scanner::Mark& opening);

    Scanner scanner;
    TreeBuilder builder;
    bool doctypeSeen = false;
    // The attributes of the tag that is being read, and their places.
    std::vector<StoredAttribute> attributes;
    std::vector<Scanner::Mark> attributePlaces;
};

bool Parser::ParseDocument() {
    if (SeesDeclaration(scanner) && !SkipDeclaration(scanner)) {
        return false;
    }
    for (;;) {
        Scanner::Mark opening{};
        if (builder.HasOpenElement()) {
            if (!ParseText(opening)) {
                return false;
            }
        } else {
            scanner.SkipSpace();
            if (scanner.AtEnd()) {
                return builder.HasTopElement() || scanner.Fail(XmlError::NoTopElement);
            }
            if (*scanner.at != L'<') {
                return scanner.FailUnexpected(XmlError::ContentOutsideTopElement);
            }
            opening = scanner.Here();
            ++scanner.at;
        }
        if (!ParseMarkup(opening)) {
            return false;
        }
    }
}

// Reads what a "<" at the mark begins.
bool Parser::ParseMarkup(const Scanner::Mark& opening) {
    switch (*scanner.at) {
        case L'/':
            ++scanner.at;
            return ParseEndTag(opening);
        case L'?':
            ++scanner.at;
            return scanner.SkipInstruction(opening);
        case L'!':
            ++scanner.at;
            return ParseBang(opening);
        case L'P':
            if (scanner.Sees(L"PRE>")) {
                scanner.at += 4;
                return ParseRegion(XmlRegion::Preformatted, XmlError::UnclosedPreformatted,
                                   opening);
            }
            return ParseStartTag(opening);
        default:
            return ParseStartTag(opening);
    }
}

bool Parser::ParseBang(const Scanner::Mark& opening) {
    if (scanner.Sees(L"--")) {
        scanner.at += 2;
        const wchar_t* const begin = scanner.at;
        return AddRegion(XmlRegion::Comment, begin, scanner.SkipComment(opening));
    }
    if (scanner.Sees(L"[CDATA[")) {
        scanner.at += 7;
        return ParseRegion(XmlRegion::Cdata, XmlError::UnclosedCdata, opening);
    }
    if (scanner.Sees(L"DOCTYPE")) {
        if (doctypeSeen || builder.HasTopElement()) {
            return scanner.Fail(XmlError::MisplacedDoctype, opening);
        }
        doctypeSeen = true;
        scanner.at += 7;
        const wchar_t* const begin = scanner.at;
        return AddRegion(XmlRegion::Doctype, begin, SkipDoctype(scanner, opening));
    }
    return scanner.Fail(XmlError::MalformedMarkup, opening);
}

// Reads a region that may stand inside elements only.
bool Parser::ParseRegion(XmlRegion region, XmlError whenUnclosed, const Scanner::Mark& opening) {
    if (!builder.HasOpenElement()) {
        return scanner.Fail(XmlError::ContentOutsideTopElement, opening);
    }
    const wchar_t* const begin = scanner.at;
    return AddRegion(region, begin,
                     scanner.SkipPast(MarkersOf(region).closing, whenUnclosed, opening));
}

// Adds the region between the places; false when there is no closing marker.
bool Parser::AddRegion(XmlRegion region, const wchar_t* begin, wchar_t* closing) {
    if (closing == nullptr) {
        return false;
    }
    *closing = L'\0';
    builder.AddRegion(begin, region);
    return true;
}

// Reads a start tag from its name on. The name gets its end only when what stands there was read.
bool Parser::ParseStartTag(const Scanner::Mark& opening) {
    if (builder.HasTopElement() && !builder.HasOpenElement()) {
        return scanner.SkipName() && scanner.Fail(XmlError::SecondTopElement, opening);
    }
    const wchar_t* const name = scanner.at;
    if (!scanner.SkipName()) {
        return false;
    }
    wchar_t* const nameEnd = scanner.at;
    attributes.clear();
    if (scanner.SkipSpace() && !ParseAttributes()) {
        return false;
    }
    const bool empty = *scanner.at == L'/';
    if (empty) {
        ++scanner.at;
    }
    if (*scanner.at != L'>') {
        return scanner.FailUnexpected(XmlError::MalformedTag);
    }
    ++scanner.at;
    *nameEnd = L'\0';
    if (empty) {
        builder.AddEmpty(name, attributes);
    } else {
        builder.Open(name, attributes);
    }
    return true;
}

// Reads attributes up to the end of the tag, after the blank behind the tag's name.
bool Parser::ParseAttributes() {
    attributePlaces.clear();
    bool separated = true;
    while (*scanner.at != L'>' && *scanner.at != L'/') {
        const Scanner::Mark place = scanner.Here();
        const wchar_t* const name = scanner.at;
        if (!scanner.SkipName()) {
            return false;
        }
        if (!separated) {
            return scanner.Fail(XmlError::MissingSpace, place);
        }
        wchar_t* const nameEnd = scanner.at;
        scanner.SkipSpace();
        if (*scanner.at != L'=') {
            return scanner.FailUnexpected(XmlError::MissingEquals);
        }
        ++scanner.at;
        scanner.SkipSpace();
        *nameEnd = L'\0';
        const wchar_t* value = nullptr;
        if (!ParseValue(value)) {
            return false;
        }
        attributes.push_back({name, value});
        attributePlaces.push_back(place);
        separated = scanner.SkipSpace();
    }
    return attributes.size() < 2 || CheckForDuplicates();
}

// Reads an attribute's quoted value.
bool Parser::ParseValue(const wchar_t*& value) {
    if (*scanner.at != L'"' && *scanner.at != L'\'') {
        return scanner.FailUnexpected(XmlError::MissingQuote);
    }
    const Scanner::Mark opening = scanner.Here();
    const wchar_t quote = *scanner.at++;
    value = scanner.at;
    Shortener text(scanner.at);
    for (;;) {
        while (IsAscii(*scanner.at, PlainInValue)) {
            ++scanner.at;
        }
        const wchar_t* const here = scanner.at;
        switch (*here) {
            case L'"':
            case L'\'':
                ++scanner.at;
                if (*here == quote) {
                    text.Finish(here);
                    return true;
                }
                break;
            case L'\n':
            case L'\r':
                scanner.SkipLineEnd();
                break;
            case L'&':
                if (!scanner.ReadReference(text)) {
                    return false;
                }
                break;
            case L'<':
                return scanner.Fail(XmlError::LessThanInValue);
            default:
                if (scanner.AtEnd()) {
                    return scanner.Fail(XmlError::UnclosedValue, opening);
                }
                if (!scanner.SkipCharacter()) {
                    return false;
                }
        }
    }
}

// Refuses the first attribute whose name was there before.
bool Parser::CheckForDuplicates() {
    constexpr std::size_t FewAttributes = 8;
    const std::size_t count = attributes.size();
    std::size_t duplicate = count;
    if (count <= FewAttributes) {
        for (std::size_t later = 1; later < count && duplicate == count; ++later) {
            for (std::size_t earlier = 0; earlier < later; ++earlier) {
                if (std::wcscmp(attributes[earlier].name, attributes[later].name) == 0) {
                    duplicate = later;
                }
            }
        }
    } else {
        std::vector<std::size_t> order(count);
        for (std::size_t index = 0; index < count; ++index) {
            order[index] = index;
        }
        std::ranges::sort(order, [this](std::size_t left, std::size_t right) {
            const int difference = std::wcscmp(attributes[left].name, attributes[right].name);
            return difference < 0 || (difference == 0 && left < right);
        });
        for (std::size_t index = 1; index < count; ++index) {
            if (std::wcscmp(attributes[order[index - 1]].name, attributes[order[index]].name) ==
                0) {
                duplicate = std::min(duplicate, order[index]);
            }
        }
    }
    return duplicate == count ||
           scanner.Fail(XmlError::DuplicateAttribute, attributePlaces[duplicate]);
}

bool Parser::ParseEndTag(const Scanner::Mark& opening) {
    if (!builder.HasOpenElement()) {
        return scanner.Fail(XmlError::ContentOutsideTopElement, opening);
    }
    const Scanner::Mark place = scanner.Here();
    if (!scanner.SkipName()) {
        return false;
    }
    const auto length = static_cast<std::size_t>(scanner.at - place.at);
    const wchar_t* const openName = builder.OpenName();
    if (std::wcsncmp(openName, place.at, length) != 0 || openName[length] != L'\0') {
        return scanner.Fail(XmlError::MismatchedEndTag, place);
    }
    scanner.SkipSpace();
    if (*scanner.at != L'>') {
        return scanner.FailUnexpected(XmlError::MalformedTag);
    }
    ++scanner.at;
    builder.Close();
    return true;
}

// Reads text up to and including the next "<", whose place is `opening`.
bool Parser::ParseText(Scanner::Mark& opening) {
    const wchar_t* const begin = scanner.at;
    Shortener text(scanner.at);
    for (;;) {
        while (IsAscii(*scanner.at, PlainInText)) {
            ++scanner.at;
        }
        const wchar_t* const here = scanner.at;
        switch (*here) {
            case L'<':
                opening = scanner.Here();
                ++scanner.at;
                if (here != begin) {
                    text.Finish(here);
                    builder.AddText(begin);
                }
                return true;
            case L'\n':
            case L'\r':
                scanner.SkipLineEnd();
                break;
            case L'&':
                if (!scanner.ReadReference(text)) {
                    return false;
                }
                break;
            case L']':
                if (scanner.Sees(L"]]>")) {
                    return scanner.Fail(XmlError::RegionEndInText);
                }
                ++scanner.at;
                break;
            default:
                if (scanner.AtEnd()) {
                    return scanner.Fail(XmlError::UnclosedElement);
                }
                if (!scanner.SkipCharacter()) {
                    return false;
                }
        }
    }
}

}  // namespace

XmlNode ParseXmlText(std::wstring text, XmlResults& results) noexcept {
    results = {};
    // Where there is no memory for a document, the text stays here.
    const platform::WipeAtEnd guard(text);
    try {
        auto document = std::make_unique<Document>(std::move(text));
        Parser parser(*document);
        if (parser.ParseDocument()) {
            Node* const top = parser.FinishTree();
            return MakeHandle(document.release(), top);
        }
        results = parser.Results();
    } catch (const std::bad_alloc&) {
        results.error = static_cast<std::uint32_t>(XmlError::OutOfMemory);
    } catch (const std::length_error&) {
        results.error = static_cast<std::uint32_t>(XmlError::OutOfMemory);
    }
    return {};
}

}  // namespace tavro::xml
