// MalformedDocuments that are not well-formed, and where and why they are refused.
#include <gtest/gtest.h>

#include "unit/xml/helpers.h"

namespace tavro::xml {
namespace {

using enum XmlError;

struct Malformed {
    std::wstring_view text;
    XmlError error;
    std::size_t line;
    std::size_t column;
};

constexpr Malformed MalformedDocuments[] = {
    // The document: exactly one top element, and nothing but comments, instructions and blanks
    // outside it.
    {L"", NoTopElement, 1, 1},
    {L" \n ", NoTopElement, 2, 2},
    {L"<!-- x -->", NoTopElement, 1, 11},
    {L"<?xml version='1.0'?>\n", NoTopElement, 2, 1},
    {L"<!DOCTYPE a>", NoTopElement, 1, 13},
    {L"<a/><b/>", SecondTopElement, 1, 5},
    {L"<a></a>\n<a/>", SecondTopElement, 2, 1},
    {L"<a/><PRE/>", SecondTopElement, 1, 5},
    {L"x<a/>", ContentOutsideTopElement, 1, 1},
    {L"<a/>x", ContentOutsideTopElement, 1, 5},
    {L"<a/>&amp;", ContentOutsideTopElement, 1, 5},
    {L"<a/>\n ]]>", ContentOutsideTopElement, 2, 2},
    {L"<![CDATA[x]]><a/>", ContentOutsideTopElement, 1, 1},
    {L"<a/><![CDATA[]]>", ContentOutsideTopElement, 1, 5},
    {L"<PRE>x</PRE>", ContentOutsideTopElement, 1, 1},
    {L"<a/><PRE></PRE>", ContentOutsideTopElement, 1, 5},
    {L"</a>", ContentOutsideTopElement, 1, 1},
    {L"<a></a></a>", ContentOutsideTopElement, 1, 8},
    {L"\uFEFF<a/>", ContentOutsideTopElement, 1, 1},

    // Elements and their ends.
    {L"<a>", UnclosedElement, 1, 4},
    {L"<a>x", UnclosedElement, 1, 5},
    {L"<a>\n<b/>\n", UnclosedElement, 3, 1},
    {L"<a><b></a>", MismatchedEndTag, 1, 9},
    {L"<a></b>", MismatchedEndTag, 1, 6},
    {L"<a></A>", MismatchedEndTag, 1, 6},
    {L"<a></ab>", MismatchedEndTag, 1, 6},
    {L"<ab></a>", MismatchedEndTag, 1, 7},
    {L"<a><PRE></pre></a>", UnclosedPreformatted, 1, 4},
    {L"<a></a", UnexpectedEnd, 1, 7},
    {L"<a></", UnexpectedEnd, 1, 6},
    {L"<a></ a>", InvalidName, 1, 6},
    {L"<a></>", InvalidName, 1, 6},
    {L"<a></a b='1'>", MalformedTag, 1, 8},
    {L"<a></a/>", MalformedTag, 1, 7},

    // Start tags.
    {L"<", UnexpectedEnd, 1, 2},
    {L"<a", UnexpectedEnd, 1, 3},
    {L"<a ", UnexpectedEnd, 1, 4},
    {L"<a/", UnexpectedEnd, 1, 4},
    {L"<a/ >", MalformedTag, 1, 4},
    {L"<a//>", MalformedTag, 1, 4},
    {L"<a / >", MalformedTag, 1, 5},
    {L"<a<b/>", MalformedTag, 1, 3},
    {L"<a'/>", MalformedTag, 1, 3},
    {L"<a=''/>", MalformedTag, 1, 3},
    {L"< a/>", InvalidName, 1, 2},
    {L"<>", InvalidName, 1, 2},
    {L"<1/>", InvalidName, 1, 2},
    {L"<-a/>", InvalidName, 1, 2},
    {L"<.a/>", InvalidName, 1, 2},
    {L"<=/>", InvalidName, 1, 2},
    {L"<\u00B7/>", InvalidName, 1, 2},
    {L"<\u00D7/>", InvalidName, 1, 2},
    {L"<\u037E/>", InvalidName, 1, 2},
    {L"<\u0300/>", InvalidName, 1, 2},
    {L"<\U000F0000/>", InvalidName, 1, 2},
    {L"<a\u00D7/>", MalformedTag, 1, 3},
    {L"<a\u2028/>", MalformedTag, 1, 3},
    {L"<a\u00A0b=''/>", MalformedTag, 1, 3},
    {L"<a>x < y</a>", InvalidName, 1, 7},

    // Attributes.
    {L"<a b/>", MissingEquals, 1, 5},
    {L"<a b>", MissingEquals, 1, 5},
    {L"<a b c='1'/>", MissingEquals, 1, 6},
    {L"<a b", UnexpectedEnd, 1, 5},
    {L"<a b=", UnexpectedEnd, 1, 6},
    {L"<a b=/>", MissingQuote, 1, 6},
    {L"<a b=1/>", MissingQuote, 1, 6},
    {L"<a b=\n c='1'/>", MissingQuote, 2, 2},
    {L"<a b=`1`/>", MissingQuote, 1, 6},
    {L"<a b=&quot;1&quot;/>", MissingQuote, 1, 6},
    {L"<a b='1/>", UnclosedValue, 1, 6},
    {L"<a\nb='1\"\n\n/>", UnclosedValue, 2, 3},
    {L"<a b='", UnclosedValue, 1, 6},
    {L"<a b='<'/>", LessThanInValue, 1, 7},
    {L"<a b='1\n <'/>", LessThanInValue, 2, 2},
    {L"<a b='1><c/>", LessThanInValue, 1, 9},
    {L"<a b='1'c='2'/>", MissingSpace, 1, 9},
    {L"<a b='1'", UnexpectedEnd, 1, 9},
    {L"<a b='1' b='2'/>", DuplicateAttribute, 1, 10},
    {L"<a b='1' c='2'\n  b='1'/>", DuplicateAttribute, 2, 3},
    {L"<a c='' b='' b='' c=''/>", DuplicateAttribute, 1, 14},
    {L"<a i='' h='' g='' f='' e='' d='' c='' b='' a='' h='' i=''/>", DuplicateAttribute, 1, 49},
    {L"<a 1='1'/>", InvalidName, 1, 4},
    {L"<a ='1'/>", InvalidName, 1, 4},
    {L"<a '1'/>", InvalidName, 1, 4},
    {L"<a <b/>", InvalidName, 1, 4},
    {L"<a b='1' &amp;/>", InvalidName, 1, 10},
    // What goes wrong first is told, and a tag's names are compared at its end.
    {L"<a b='' b='' c/>", MissingEquals, 1, 15},

    // References.
    {L"<a>&</a>", MalformedReference, 1, 4},
    {L"<a>x & y</a>", MalformedReference, 1, 6},
    {L"<a>&amp</a>", MalformedReference, 1, 4},
    {L"<a>\n\n &amp </a>", MalformedReference, 3, 2},
    {L"<a>&;</a>", MalformedReference, 1, 4},
    {L"<a>&1;</a>", MalformedReference, 1, 4},
    {L"<a>& amp;</a>", MalformedReference, 1, 4},
    {L"<a>&#;</a>", MalformedReference, 1, 4},
    {L"<a>&#x;</a>", MalformedReference, 1, 4},
    {L"<a>&#xG;</a>", MalformedReference, 1, 4},
    {L"<a>&#X41;</a>", MalformedReference, 1, 4},
    {L"<a>&#A;</a>", MalformedReference, 1, 4},
    {L"<a>&#65</a>", MalformedReference, 1, 4},
    {L"<a>&#-65;</a>", MalformedReference, 1, 4},
    {L"<a b='&'/>", MalformedReference, 1, 7},
    {L"<a b='&lt'/>", MalformedReference, 1, 7},
    {L"<a>&", MalformedReference, 1, 4},
    {L"<a>&am", MalformedReference, 1, 4},
    {L"<a>&#x4", MalformedReference, 1, 4},
    {L"<a>&#0;</a>", InvalidCharacterReference, 1, 4},
    {L"<a>&#8;</a>", InvalidCharacterReference, 1, 4},
    {L"<a>&#xD800;</a>", InvalidCharacterReference, 1, 4},
    {L"<a>&#xDFFF;</a>", InvalidCharacterReference, 1, 4},
    {L"<a>&#xFFFE;</a>", InvalidCharacterReference, 1, 4},
    {L"<a>&#x110000;</a>", InvalidCharacterReference, 1, 4},
    // These would be good characters if the number wrapped around.
    {L"<a>&#4294967361;</a>", InvalidCharacterReference, 1, 4},
    {L"<a>&#x10000000000000041;</a>", InvalidCharacterReference, 1, 4},
    {L"<a b='&#31;'/>", InvalidCharacterReference, 1, 7},

    // Text.
    {L"<a>]]></a>", RegionEndInText, 1, 4},
    {L"<a>x]]]>y</a>", RegionEndInText, 1, 6},
    {L"<a><![CDATA[x]]>]]></a>", RegionEndInText, 1, 17},

    // Characters.
    {L"<a>\x01</a>", InvalidCharacter, 1, 4},
    {L"<a>\x0B</a>", InvalidCharacter, 1, 4},
    {L"<a>\n\t\x1F</a>", InvalidCharacter, 2, 2},
    {L"<a>\xFFFE</a>", InvalidCharacter, 1, 4},
    {L"<a>\xFFFF</a>", InvalidCharacter, 1, 4},
    {L"<a b='\x0C'/>", InvalidCharacter, 1, 7},
    {L"<a b='\xFFFF'/>", InvalidCharacter, 1, 7},
    {L"<a \x01/>", InvalidCharacter, 1, 4},
    {L"<a\xFFFE/>", InvalidCharacter, 1, 3},
    {L"<\x01/>", InvalidCharacter, 1, 2},
    {L"\x02<a/>", InvalidCharacter, 1, 1},
    {L"<a/>\x1A", InvalidCharacter, 1, 5},
    {L"<a><!--\x01--></a>", InvalidCharacter, 1, 8},
    {L"<a><![CDATA[\x01]]></a>", InvalidCharacter, 1, 13},
    {L"<a><PRE>\x01</PRE></a>", InvalidCharacter, 1, 9},
    {L"<a><?p \x01?></a>", InvalidCharacter, 1, 8},
    {L"<!DOCTYPE a SYSTEM '\x01'><a/>", InvalidCharacter, 1, 21},
    {L"<!DOCTYPE a [<!ELEMENT \x01>]><a/>", InvalidCharacter, 1, 24},

    // Regions.
    {L"<a><!-- -- --></a>", DashesInComment, 1, 9},
    {L"<a><!-- x ---></a>", DashesInComment, 1, 11},
    {L"<a><!---></a>", UnclosedComment, 1, 4},
    {L"<a>\n<!-- x", UnclosedComment, 2, 1},
    {L"<a><!-- x --", UnclosedComment, 1, 4},
    {L"<!-- x -", UnclosedComment, 1, 1},
    {L"<a><![CDATA[x]]</a>", UnclosedCdata, 1, 4},
    {L"<a>\n <![CDATA[\n\n", UnclosedCdata, 2, 2},
    {L"<a><PRE>x</PRE</a>", UnclosedPreformatted, 1, 4},
    {L"<a><PRE>x</PRE ></a>", UnclosedPreformatted, 1, 4},
    {L"<a><!x></a>", MalformedMarkup, 1, 4},
    {L"<a><!></a>", MalformedMarkup, 1, 4},
    {L"<a><!-x--></a>", MalformedMarkup, 1, 4},
    {L"<a><! -- x --></a>", MalformedMarkup, 1, 4},
    {L"<a><![cdata[x]]></a>", MalformedMarkup, 1, 4},
    {L"<a><![ CDATA[x]]></a>", MalformedMarkup, 1, 4},
    {L"<!doctype a><a/>", MalformedMarkup, 1, 1},
    {L"<!ELEMENT a ANY><a/>", MalformedMarkup, 1, 1},

    // DOCTYPE.
    {L"<!DOCTYPE>", MalformedDoctype, 1, 10},
    {L"<!DOCTYPEa><a/>", MalformedDoctype, 1, 10},
    {L"<!DOCTYPE ><a/>", InvalidName, 1, 11},
    {L"<!DOCTYPE a b><a/>", MalformedDoctype, 1, 13},
    {L"<!DOCTYPE a SYSTEM><a/>", MalformedDoctype, 1, 19},
    {L"<!DOCTYPE a SYSTEM x><a/>", MalformedDoctype, 1, 20},
    {L"<!DOCTYPE a SYSTEM 's' 't'><a/>", MalformedDoctype, 1, 24},
    {L"<!DOCTYPE a PUBLIC 'p'><a/>", MalformedDoctype, 1, 23},
    {L"<!DOCTYPE a PUBLIC 'p''s'><a/>", MalformedDoctype, 1, 23},
    {L"<!DOCTYPE a [<a/>]><a/>", MalformedDoctype, 1, 14},
    {L"<!DOCTYPE a [x]><a/>", MalformedDoctype, 1, 14},
    {L"<!DOCTYPE a [<!ELEMENTa ANY>]><a/>", MalformedDoctype, 1, 23},
    {L"<!DOCTYPE a [<!ELEMENT a <!>]><a/>", MalformedDoctype, 1, 26},
    {L"<!DOCTYPE a [%b]><a/>", MalformedDoctype, 1, 16},
    {L"<!DOCTYPE a [% b;]><a/>", InvalidName, 1, 15},
    {L"<!DOCTYPE a [<!-- -- -->]><a/>", DashesInComment, 1, 19},
    {L"<!DOCTYPE a [<?xml version='1.0'?>]><a/>", MisplacedDeclaration, 1, 14},
    {L"<!DOCTYPE a []b><a/>", MalformedDoctype, 1, 15},
    {L"<!DOCTYPE a", UnclosedDoctype, 1, 1},
    {L"\n<!DOCTYPE a SYSTEM 's><a/>", UnclosedDoctype, 2, 1},
    {L"<!DOCTYPE a [<!ENTITY b \"]><a/>", UnclosedDoctype, 1, 1},
    {L"<!DOCTYPE a [<!-- ]><a/>", UnclosedDoctype, 1, 1},
    {L"<!DOCTYPE a [\n", UnclosedDoctype, 1, 1},
    {L"<!DOCTYPE a><!DOCTYPE a><a/>", MisplacedDoctype, 1, 13},
    {L"<a/><!DOCTYPE a>", MisplacedDoctype, 1, 5},
    {L"<a><!DOCTYPE a></a>", MisplacedDoctype, 1, 4},

    // The XML declaration and processing instructions.
    {L" <?xml version='1.0'?><a/>", MisplacedDeclaration, 1, 2},
    {L"<!-- x --><?xml version='1.0'?><a/>", MisplacedDeclaration, 1, 11},
    {L"<?xml version='1.0'?><?xml version='1.0'?><a/>", MisplacedDeclaration, 1, 22},
    {L"<a><?xml version='1.0'?></a>", MisplacedDeclaration, 1, 4},
    {L"<?XML version='1.0'?><a/>", ReservedTarget, 1, 3},
    {L"<a><?xMl?></a>", ReservedTarget, 1, 6},
    {L"<?xml?><a/>", MalformedDeclaration, 1, 6},
    {L"<?xml ?><a/>", MalformedDeclaration, 1, 7},
    {L"<?xml encoding='UTF-8'?><a/>", MalformedDeclaration, 1, 7},
    {L"<?xml Version='1.0'?><a/>", MalformedDeclaration, 1, 7},
    {L"<?xml version?><a/>", MalformedDeclaration, 1, 14},
    {L"<?xml version=1.0?><a/>", MalformedDeclaration, 1, 15},
    {L"<?xml version=''?><a/>", MalformedDeclaration, 1, 15},
    {L"<?xml version='1.'?><a/>", MalformedDeclaration, 1, 15},
    {L"<?xml version='2.0'?><a/>", MalformedDeclaration, 1, 15},
    {L"<?xml version='1.0a'?><a/>", MalformedDeclaration, 1, 15},
    {L"<?xml version='1.0'encoding='UTF-8'?><a/>", MalformedDeclaration, 1, 20},
    {L"<?xml version='1.0' encoding=''?><a/>", MalformedDeclaration, 1, 30},
    {L"<?xml version='1.0' encoding='8'?><a/>", MalformedDeclaration, 1, 30},
    {L"<?xml version='1.0' encoding='a b'?><a/>", MalformedDeclaration, 1, 30},
    {L"<?xml version='1.0' standalone='YES'?><a/>", MalformedDeclaration, 1, 32},
    {L"<?xml version='1.0' standalone='yes' encoding='a'?><a/>", MalformedDeclaration, 1, 38},
    {L"<?xml version='1.0' x='y'?><a/>", MalformedDeclaration, 1, 21},
    {L"<?xml version='1.0'><a/>", MalformedDeclaration, 1, 20},
    {L"<?xml version='1.0' ? ><a/>", MalformedDeclaration, 1, 21},
    {L"<?xml version='1.0'", UnexpectedEnd, 1, 20},
    {L"<?xml version='1.0", UnclosedValue, 1, 15},
    {L"<? p?><a/>", InvalidName, 1, 3},
    {L"<?"
     L"?><a/>",
     InvalidName, 1, 3},
    {L"<?1?><a/>", InvalidName, 1, 3},
    {L"<?p'?><a/>", MalformedInstruction, 1, 4},
    {L"<?p x><a/>", UnclosedInstruction, 1, 1},
    {L"<a>\n<?p x?</a>", UnclosedInstruction, 2, 1},

    // Lines are counted through every kind of line end and every kind of text.
    {L"<a>\r\n\r\n\n\r&</a>", MalformedReference, 5, 1},
    {L"<a\r\nb='\r\n\r'\r/>\n<b/>", SecondTopElement, 6, 1},
    {L"<!--\r\n\r--><?p\r\n\n?>\r<!DOCTYPE\na\n[\r\n<!ENTITY\nb\n'\n'>]>\n<a>&</a>",
     MalformedReference, 13, 4},
    {L"<a><![CDATA[\n]]><PRE>\n\r</PRE>\n&amp;&lt;\t&</a>", MalformedReference, 5, 11},
    // A character beyond the first 65536 is one column.
    {L"<a>\U0001F600&</a>", MalformedReference, 1, 5},
    {L"<\U00010000 \U00010000='\U00010000'>&</\U00010000>", MalformedReference, 1, 10},
    {L"<a><!--\U00010000--><?p \U00010000?>&</a>", MalformedReference, 1, 19},
};

TEST(XmlMalformed, IsRefusedWithItsReasonAndPlace) {
    for (const Malformed& document : MalformedDocuments) {
        SCOPED_TRACE(Printable(document.text));
        EXPECT_EQ(DescribeRefusal(std::wstring(document.text)),
                  Describe(document.error, document.line, document.column));
    }
}

TEST(XmlMalformed, ZeroIsNoCharacterAnywhere) {
    const std::wstring document = L"<?xml version='1.0'?><!DOCTYPE a [<!--x-->]><a b='c'>d</a>";
    for (std::size_t place = 0; place <= document.size(); ++place) {
        std::wstring text = document;
        text.insert(place, 1, L'\0');
        SCOPED_TRACE(place);
        EXPECT_NE(DescribeRefusal(text), "0 at 0:0");
    }
    EXPECT_EQ(DescribeRefusal(document + L'\0'),
              Describe(InvalidCharacter, 1, document.size() + 1));
    EXPECT_EQ(DescribeRefusal(std::wstring(1000, L'\0')), Describe(InvalidCharacter, 1, 1));
}

TEST(XmlMalformed, HalfASurrogatePairIsNoCharacter) {
    const std::wstring high(1, static_cast<wchar_t>(0xD83D));
    const std::wstring low(1, static_cast<wchar_t>(0xDE00));
    for (const std::wstring& half : {high, low, low + high, high + high}) {
        EXPECT_EQ(DescribeRefusal(L"<a>" + half + L"</a>"), Describe(InvalidCharacter, 1, 4));
        EXPECT_EQ(DescribeRefusal(L"<a b='" + half + L"'/>"), Describe(InvalidCharacter, 1, 7));
        EXPECT_EQ(DescribeRefusal(L"<a><!--" + half + L"--></a>"),
                  Describe(InvalidCharacter, 1, 8));
        EXPECT_EQ(DescribeRefusal(L"<" + half + L"/>"), Describe(InvalidCharacter, 1, 2));
        EXPECT_EQ(DescribeRefusal(L"<a>" + half), Describe(InvalidCharacter, 1, 4));
    }
}

TEST(XmlMalformed, NumbersBeyondTheLastCharacterAreNone) {
    if constexpr (sizeof(wchar_t) > 2) {
        for (const unsigned long value : {0x110000UL, 0x7FFFFFFFUL, 0xFFFFFFFFUL}) {
            const auto unit = static_cast<wchar_t>(value);
            EXPECT_EQ(DescribeRefusal(std::wstring(L"<a>") + unit),
                      Describe(InvalidCharacter, 1, 4));
            EXPECT_EQ(DescribeRefusal(std::wstring(L"<a") + unit),
                      Describe(InvalidCharacter, 1, 3));
        }
    } else {
        EXPECT_EQ(DescribeRefusal(L"<a>\xFFFF"), Describe(InvalidCharacter, 1, 4));
    }
}

}  // namespace
}  // namespace tavro::xml
