#include "xml/parser.h"

#include <algorithm>
#include <cwchar>
#include <memory>
#include <new>
#include <stdexcept>
#include <vector>

#include "platform/wipe.h"
#include "xml/builder.h"
#include "xml/prolog.h"
#include "xml/scanner.h"

namespace tavro::xml {
namespace {

class Parser {
  public:
    explicit Parser(Document& document) : scanner_(document.text), builder_(document) {}

    // False when the text is malformed; Results tells why.
    bool ParseDocument();
    const XmlResults& Results() const { return scanner_.Results(); }
    // After success.
    Node* FinishTree() { return builder_.Finish(); }

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

    Scanner scanner_;
    TreeBuilder builder_;
    bool doctypeSeen_ = false;
    // The attributes of the tag that is being read, and their places.
    std::vector<StoredAttribute> attributes_;
    std::vector<Scanner::Mark> attributePlaces_;
};

bool Parser::ParseDocument() {
    if (SeesDeclaration(scanner_) && !SkipDeclaration(scanner_)) {
        return false;
    }
    for (;;) {
        Scanner::Mark opening{};
        if (builder_.HasOpenElement()) {
            if (!ParseText(opening)) {
                return false;
            }
        } else {
            scanner_.SkipSpace();
            if (scanner_.AtEnd()) {
                return builder_.HasTopElement() || scanner_.Fail(XmlError::NoTopElement);
            }
            if (*scanner_.at != L'<') {
                return scanner_.FailUnexpected(XmlError::ContentOutsideTopElement);
            }
            opening = scanner_.Here();
            ++scanner_.at;
        }
        if (!ParseMarkup(opening)) {
            return false;
        }
    }
}

// Reads what a "<" at the mark begins.
bool Parser::ParseMarkup(const Scanner::Mark& opening) {
    switch (*scanner_.at) {
        case L'/':
            ++scanner_.at;
            return ParseEndTag(opening);
        case L'?':
            ++scanner_.at;
            return scanner_.SkipInstruction(opening);
        case L'!':
            ++scanner_.at;
            return ParseBang(opening);
        case L'P':
            if (scanner_.Sees(L"PRE>")) {
                scanner_.at += 4;
                return ParseRegion(XmlRegion::Preformatted, XmlError::UnclosedPreformatted,
                                   opening);
            }
            return ParseStartTag(opening);
        default:
            return ParseStartTag(opening);
    }
}

bool Parser::ParseBang(const Scanner::Mark& opening) {
    if (scanner_.Sees(L"--")) {
        scanner_.at += 2;
        const wchar_t* const begin = scanner_.at;
        return AddRegion(XmlRegion::Comment, begin, scanner_.SkipComment(opening));
    }
    if (scanner_.Sees(L"[CDATA[")) {
        scanner_.at += 7;
        return ParseRegion(XmlRegion::Cdata, XmlError::UnclosedCdata, opening);
    }
    if (scanner_.Sees(L"DOCTYPE")) {
        if (doctypeSeen_ || builder_.HasTopElement()) {
            return scanner_.Fail(XmlError::MisplacedDoctype, opening);
        }
        doctypeSeen_ = true;
        scanner_.at += 7;
        const wchar_t* const begin = scanner_.at;
        return AddRegion(XmlRegion::Doctype, begin, SkipDoctype(scanner_, opening));
    }
    return scanner_.Fail(XmlError::MalformedMarkup, opening);
}

// Reads a region that may stand inside elements only.
bool Parser::ParseRegion(XmlRegion region, XmlError whenUnclosed, const Scanner::Mark& opening) {
    if (!builder_.HasOpenElement()) {
        return scanner_.Fail(XmlError::ContentOutsideTopElement, opening);
    }
    const wchar_t* const begin = scanner_.at;
    return AddRegion(region, begin,
                     scanner_.SkipPast(MarkersOf(region).closing, whenUnclosed, opening));
}

// Adds the region between the places; false when there is no closing marker.
bool Parser::AddRegion(XmlRegion region, const wchar_t* begin, wchar_t* closing) {
    if (closing == nullptr) {
        return false;
    }
    *closing = L'\0';
    builder_.AddRegion(begin, region);
    return true;
}

// Reads a start tag from its name on. The name gets its end only when what stands there was read.
bool Parser::ParseStartTag(const Scanner::Mark& opening) {
    if (builder_.HasTopElement() && !builder_.HasOpenElement()) {
        return scanner_.SkipName() && scanner_.Fail(XmlError::SecondTopElement, opening);
    }
    const wchar_t* const name = scanner_.at;
    if (!scanner_.SkipName()) {
        return false;
    }
    wchar_t* const nameEnd = scanner_.at;
    attributes_.clear();
    if (scanner_.SkipSpace() && !ParseAttributes()) {
        return false;
    }
    const bool empty = *scanner_.at == L'/';
    if (empty) {
        ++scanner_.at;
    }
    if (*scanner_.at != L'>') {
        return scanner_.FailUnexpected(XmlError::MalformedTag);
    }
    ++scanner_.at;
    *nameEnd = L'\0';
    if (empty) {
        builder_.AddEmpty(name, attributes_);
    } else {
        builder_.Open(name, attributes_);
    }
    return true;
}

// Reads attributes up to the end of the tag, after the blank behind the tag's name.
bool Parser::ParseAttributes() {
    attributePlaces_.clear();
    bool separated = true;
    while (*scanner_.at != L'>' && *scanner_.at != L'/') {
        const Scanner::Mark place = scanner_.Here();
        const wchar_t* const name = scanner_.at;
        if (!scanner_.SkipName()) {
            return false;
        }
        if (!separated) {
            return scanner_.Fail(XmlError::MissingSpace, place);
        }
        wchar_t* const nameEnd = scanner_.at;
        scanner_.SkipSpace();
        if (*scanner_.at != L'=') {
            return scanner_.FailUnexpected(XmlError::MissingEquals);
        }
        ++scanner_.at;
        scanner_.SkipSpace();
        *nameEnd = L'\0';
        const wchar_t* value = nullptr;
        if (!ParseValue(value)) {
            return false;
        }
        attributes_.push_back({name, value});
        attributePlaces_.push_back(place);
        separated = scanner_.SkipSpace();
    }
    return attributes_.size() < 2 || CheckForDuplicates();
}

// Reads an attribute's quoted value.
bool Parser::ParseValue(const wchar_t*& value) {
    if (*scanner_.at != L'"' && *scanner_.at != L'\'') {
        return scanner_.FailUnexpected(XmlError::MissingQuote);
    }
    const Scanner::Mark opening = scanner_.Here();
    const wchar_t quote = *scanner_.at++;
    value = scanner_.at;
    Shortener text(scanner_.at);
    for (;;) {
        while (IsAscii(*scanner_.at, PlainInValue)) {
            ++scanner_.at;
        }
        const wchar_t* const here = scanner_.at;
        switch (*here) {
            case L'"':
            case L'\'':
                ++scanner_.at;
                if (*here == quote) {
                    text.Finish(here);
                    return true;
                }
                break;
            case L'\n':
            case L'\r':
                scanner_.SkipLineEnd();
                break;
            case L'&':
                if (!scanner_.ReadReference(text)) {
                    return false;
                }
                break;
            case L'<':
                return scanner_.Fail(XmlError::LessThanInValue);
            default:
                if (scanner_.AtEnd()) {
                    return scanner_.Fail(XmlError::UnclosedValue, opening);
                }
                if (!scanner_.SkipCharacter()) {
                    return false;
                }
        }
    }
}

// Refuses the first attribute whose name was there before.
bool Parser::CheckForDuplicates() {
    constexpr std::size_t FewAttributes = 8;
    const std::size_t count = attributes_.size();
    std::size_t duplicate = count;
    if (count <= FewAttributes) {
        for (std::size_t later = 1; later < count && duplicate == count; ++later) {
            for (std::size_t earlier = 0; earlier < later; ++earlier) {
                if (std::wcscmp(attributes_[earlier].name, attributes_[later].name) == 0) {
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
            const int difference = std::wcscmp(attributes_[left].name, attributes_[right].name);
            return difference < 0 || (difference == 0 && left < right);
        });
        for (std::size_t index = 1; index < count; ++index) {
            if (std::wcscmp(attributes_[order[index - 1]].name, attributes_[order[index]].name) ==
                0) {
                duplicate = std::min(duplicate, order[index]);
            }
        }
    }
    return duplicate == count ||
           scanner_.Fail(XmlError::DuplicateAttribute, attributePlaces_[duplicate]);
}

bool Parser::ParseEndTag(const Scanner::Mark& opening) {
    if (!builder_.HasOpenElement()) {
        return scanner_.Fail(XmlError::ContentOutsideTopElement, opening);
    }
    const Scanner::Mark place = scanner_.Here();
    if (!scanner_.SkipName()) {
        return false;
    }
    const auto length = static_cast<std::size_t>(scanner_.at - place.at);
    const wchar_t* const openName = builder_.OpenName();
    if (std::wcsncmp(openName, place.at, length) != 0 || openName[length] != L'\0') {
        return scanner_.Fail(XmlError::MismatchedEndTag, place);
    }
    scanner_.SkipSpace();
    if (*scanner_.at != L'>') {
        return scanner_.FailUnexpected(XmlError::MalformedTag);
    }
    ++scanner_.at;
    builder_.Close();
    return true;
}

// Reads text up to and including the next "<", whose place is `opening`.
bool Parser::ParseText(Scanner::Mark& opening) {
    const wchar_t* const begin = scanner_.at;
    Shortener text(scanner_.at);
    for (;;) {
        while (IsAscii(*scanner_.at, PlainInText)) {
            ++scanner_.at;
        }
        const wchar_t* const here = scanner_.at;
        switch (*here) {
            case L'<':
                opening = scanner_.Here();
                ++scanner_.at;
                if (here != begin) {
                    text.Finish(here);
                    builder_.AddText(begin);
                }
                return true;
            case L'\n':
            case L'\r':
                scanner_.SkipLineEnd();
                break;
            case L'&':
                if (!scanner_.ReadReference(text)) {
                    return false;
                }
                break;
            case L']':
                if (scanner_.Sees(L"]]>")) {
                    return scanner_.Fail(XmlError::RegionEndInText);
                }
                ++scanner_.at;
                break;
            default:
                if (scanner_.AtEnd()) {
                    return scanner_.Fail(XmlError::UnclosedElement);
                }
                if (!scanner_.SkipCharacter()) {
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
