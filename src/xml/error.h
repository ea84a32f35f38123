// What the XML document reader says about a file that it refuses.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tavro::xml {

// The error codes of the reader. 3, 10 and 14 are fixed for callers; the numbers from 100 on are
// those of malformed text, of which each has a place.
enum class XmlError : std::uint32_t {
    None = 0,

    EmptyFile = 3,
    FileNotOpened = 10,
    ConversionFailed = 14,
    // The file was opened, but could not be read to its end.
    FileNotRead = 15,
    // The document is too large for the machine.
    OutOfMemory = 16,
    // The file has more bytes than its reader takes; none of them was read.
    FileTooLarge = 17,

    // A character that no document may hold, or half a surrogate pair.
    InvalidCharacter = 100,
    // The text ends inside a tag or other markup.
    UnexpectedEnd = 101,
    // The text ends inside an element.
    UnclosedElement = 102,

    // Tags.
    // Something else where a name must begin.
    InvalidName = 110,
    // Neither a blank, an attribute nor the end of the tag.
    MalformedTag = 111,
    // An attribute that touches the one before it.
    MissingSpace = 112,
    // Something else where the "=" after an attribute's name must stand.
    MissingEquals = 113,
    // An attribute's value that does not begin with a quote.
    MissingQuote = 114,
    // A quoted value that never ends; the place is its beginning.
    UnclosedValue = 115,
    // "<" in an attribute's value.
    LessThanInValue = 116,
    // The second attribute of the same name in a tag.
    DuplicateAttribute = 117,
    // An end tag's name that is not the open element's.
    MismatchedEndTag = 118,

    // Text. The place is that of the "&", or of the "]]>".
    // "&" that begins no reference.
    MalformedReference = 120,
    // A reference to a character that no document may hold.
    InvalidCharacterReference = 121,
    // "]]>" in text.
    RegionEndInText = 122,

    // Regions and instructions. The place of an unclosed or misplaced one is its beginning.
    // "<!" that opens nothing known.
    MalformedMarkup = 130,
    UnclosedComment = 131,
    // "--" inside a comment.
    DashesInComment = 132,
    UnclosedCdata = 133,
    // "<PRE>" without "</PRE>".
    UnclosedPreformatted = 134,
    UnclosedInstruction = 135,
    // No blank between an instruction's name and its text.
    MalformedInstruction = 136,
    // An instruction that is named "xml" in another case.
    ReservedTarget = 137,
    MalformedDeclaration = 138,
    // An XML declaration that is not the very beginning.
    MisplacedDeclaration = 139,
    UnclosedDoctype = 140,
    MalformedDoctype = 141,
    // A DOCTYPE that is the second, or not before the top element.
    MisplacedDoctype = 142,

    // The document as a whole.
    NoTopElement = 150,
    // A second element that stands by itself.
    SecondTopElement = 151,
    // Text, a region or an end tag outside the top element.
    ContentOutsideTopElement = 152,
};

// The outcome of a parse.
struct XmlResults {
    // A value of XmlError.
    std::uint32_t error = 0;
    // The place of the error, counted from 1 in lines and in characters (a tab is one character);
    // both 0 when there is no error, or none in the text.
    std::size_t line = 0;
    std::size_t column = 0;
};

}  // namespace tavro::xml
