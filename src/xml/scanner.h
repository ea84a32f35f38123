// The parser's place in the text, and the parts of the grammar that tags, regions and the document
// share; for the sources of the reader only.
#pragma once

#include <cstddef>
#include <cwchar>
#include <string>
#include <string_view>

#include "xml/characters.h"
#include "xml/error.h"

namespace tavro::xml {

// Shortens a text in place while it is read: parts of it are replaced by one character each.
class Shortener {
  public:
    explicit Shortener(wchar_t* begin) : written_(begin), kept_(begin) {}

    // Keeps what was read up to `at`, puts `character` in the place of [at, next) and goes on
    // there.
    void Replace(const wchar_t* at, wchar_t character, const wchar_t* next) {
        Keep(at);
        *written_++ = character;
        kept_ = next;
    }

    // Keeps what was read up to `at` and puts the end behind it, at or before `at`.
    void Finish(const wchar_t* at) {
        Keep(at);
        *written_ = L'\0';
    }

  private:
    void Keep(const wchar_t* at) {
        const auto count = static_cast<std::size_t>(at - kept_);
        if (written_ != kept_) {
            std::wmemmove(written_, kept_, count);
        }
        written_ += count;
        kept_ = at;
    }

    wchar_t* written_;
    // Where the part that is not yet moved to `written` begins.
    const wchar_t* kept_;
};

// A scanner stands at a unit of the text and moves forward only. What it has passed may be
// overwritten, so the line is counted on the way. Its functions that read a part of the grammar
// return false when the text is malformed there, after Fail; then nothing else may be read.
class Scanner {
  public:
    // The text must outlive the scanner.
    explicit Scanner(std::wstring& text)
        : at(text.data()), end_(text.data() + text.size()), lineStart_(at) {}

    // A place that an error may be reported at later.
    struct Mark {
        const wchar_t* at;
        const wchar_t* lineStart;
        std::size_t line;
    };
    Mark Here() const { return {at, lineStart_, line_}; }

    bool AtEnd() const { return at == end_; }
    // Whether the text goes on with this one.
    bool Sees(std::wstring_view expected) const;

    // Steps over blanks and line ends and tells whether there were any.
    bool SkipSpace() {
        const wchar_t* const begin = at;
        for (;;) {
            if (*at == L' ' || *at == L'\t') {
                ++at;
            } else if (*at == L'\n' || *at == L'\r') {
                SkipLineEnd();
            } else {
                return at != begin;
            }
        }
    }
    // Steps over one line feed, one carriage return or the pair.
    void SkipLineEnd() {
        at += at[0] == L'\r' && at[1] == L'\n' ? 2 : 1;
        ++line_;
        lineStart_ = at;
    }
    // Steps over one character that a document may hold.
    bool SkipCharacter();
    // Steps over a name.
    bool SkipName() {
        if (!IsAscii(*at, NameStart)) {
            return SkipUnusualName();
        }
        do {
            ++at;
        } while (IsAscii(*at, NamePart));
        return UnitValue(*at) < AsciiEnd || SkipRestOfName();
    }
    // Steps over a quoted text, which may hold anything but its quote.
    bool SkipLiteral(XmlError whenMissing);
    // Steps over a reference. One of the five known ones is replaced.
    bool ReadReference(Shortener& text);
    // Goes on until the marker and steps over it; `opening` is blamed when there is none. Returns
    // null on failure, else the place where the marker begins.
    wchar_t* SkipPast(std::wstring_view closing, XmlError whenMissing, const Mark& opening);
    // Steps over the rest of a comment and returns where its closing marker begins, or null.
    wchar_t* SkipComment(const Mark& opening);
    // Steps over the rest of a processing instruction, whose "<?" began at the mark.
    bool SkipInstruction(const Mark& opening);

    // Notes the error and its place, and returns false.
    bool Fail(XmlError error) { return Fail(error, Here()); }
    bool Fail(XmlError error, const Mark& place);
    // The same for a place where something else was expected: when the text ends there, or holds
    // what no document may, that is the error.
    bool FailUnexpected(XmlError error);

    // What Fail noted.
    const XmlResults& Results() const { return results_; }

    // The unit to be read next; at the end of the text it is a zero.
    wchar_t* at;

  private:
    // Steps over a name that does not begin with an ASCII character, or is none.
    bool SkipUnusualName();
    // Steps over what belongs to the name before it; true.
    bool SkipRestOfName();
    // Steps over the character that stands here.
    void Step(const CharacterHere& here) {
        at += here.unitCount;
        lineStart_ += here.unitCount - 1;
    }

    const wchar_t* end_;
    // Where the line would begin if every character on it up to here took one unit.
    const wchar_t* lineStart_;
    std::size_t line_ = 1;
    XmlResults results_;
};

}  // namespace tavro::xml
