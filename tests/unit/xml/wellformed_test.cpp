// WellFormedDocuments that are well-formed, and the trees that they stand for.
#include <gtest/gtest.h>

#include "unit/xml/helpers.h"

namespace tavro::xml {
namespace {

struct WellFormed {
    std::wstring_view text;
    std::wstring_view tree;
};

constexpr WellFormed WellFormedDocuments[] = {
    // Elements.
    {L"<a/>", L"a"},
    {L"<a />", L"a"},
    {L"<a></a>", L"a"},
    {L"<a\n></a\t>", L"a"},
    {L"<a><b/><c><d/></c></a>", L"a (b) (c (d))"},
    {L"<:a.-_0/>", L":a.-_0"},
    {L"<a:b c:d='e'/>", L"a:b @c:d='e'"},
    {L"<a><a/></a>", L"a (a)"},
    {L"<\u00C0\u00B7\u0300\u203F\u2040/>", L"\u00C0\u00B7\u0300\u203F\u2040"},
    {L"<\u540D\u524D \u5024='\u65E5\u672C'/>", L"\u540D\u524D @\u5024='\u65E5\u672C'"},
    {L"<\U00010000\U000EFFFF/>", L"\U00010000\U000EFFFF"},
    {L"<a>\U0001F600</a>", L"a \"\U0001F600\""},
    {L"<a>\uFFFD\uE000\uD7FF\U0010FFFF\x80\x85\u2028\x7F</a>",
     L"a \"\uFFFD\uE000\uD7FF\U0010FFFF\x80\x85\u2028\x7F\""},
    // Names are told apart by case and to their last character.
    {L"<a><A/><ab/><a/></a>", L"a (A) (ab) (a)"},

    // Attributes.
    {L"<a b='1'/>", L"a @b='1'"},
    {L"<a b=\"1\" c='2'/>", L"a @b='1' @c='2'"},
    {L"<a b=''/>", L"a @b=''"},
    {L"<a\tb = '1'\nc\r\n=\r\n'2'\n></a>", L"a @b='1' @c='2'"},
    {L"<a b='\"' c=\"'\"/>", L"a @b='\"' @c='''"},
    {L"<a b='>' c='/>' d=']]>' e='--' f='='/>", L"a @b='>' @c='/>' @d=']]>' @e='--' @f='='"},
    {L"<a b='1' B='2' bb='3'/>", L"a @b='1' @B='2' @bb='3'"},
    {L"<a b=' x  y '/>", L"a @b=' x  y '"},
    // Values are taken as they stand.
    {L"<a b='x\ty\nz\rv\r\nw'/>", L"a @b='x\ty\nz\rv\r\nw'"},
    {L"<a b='\n\n'/>", L"a @b='\n\n'"},
    {L"<a b='&lt;\t\r\n&gt;\t'/>", L"a @b='<\t\r\n>\t'"},

    // The five entities, in values and in text.
    {L"<a b='&amp;&lt;&gt;&quot;&apos;'/>", L"a @b='&<>\"''"},
    {L"<a>&amp;&lt;&gt;&quot;&apos;</a>", L"a \"&<>\"'\""},
    {L"<a>x&lt;y</a>", L"a \"x<y\""},
    {L"<a>&amp;lt;</a>", L"a \"&lt;\""},
    {L"<a b='1&amp;2&#x26;3&amp;4'/>", L"a @b='1&2&#x26;3&4'"},
    // Every other reference stays as it stands.
    {L"<a b='&#10;&#xA;&#x10FFFF;'>&#65;&#x41;</a>",
     L"a @b='&#10;&#xA;&#x10FFFF;' \"&#65;&#x41;\""},
    {L"<a>&nbsp;&AMP;&Lt;&amps;&am;</a>", L"a \"&nbsp;&AMP;&Lt;&amps;&am;\""},
    {L"<a>&#00000000000000000000000065;</a>", L"a \"&#00000000000000000000000065;\""},

    // Text.
    {L"<a>x</a>", L"a \"x\""},
    {L"<a> </a>", L"a \" \""},
    {L"<a>x<b/>y<c/>z</a>", L"a \"x\" \"y\" \"z\" (b) (c)"},
    {L"<a>\n <b/>\n</a>", L"a \"\n \" \"\n\" (b)"},
    {L"<a>1\r\n2\r3\n4\r\r\n5</a>", L"a \"1\r\n2\r3\n4\r\r\n5\""},
    {L"<a>\r</a>", L"a \"\r\""},
    {L"<a>&lt;\r\n&gt;\r</a>", L"a \"<\r\n>\r\""},
    {L"<a>]] > ]> ] ]</a>", L"a \"]] > ]> ] ]\""},
    {L"<a>></a>", L"a \">\""},
    {L"<a>'\"</a>", L"a \"'\"\""},
    {L"<a>x<?p q?>y</a>", L"a \"x\" \"y\""},

    // The four regions.
    {L"<a><![CDATA[<b>&amp;</b>]]></a>", L"a <![CDATA[<b>&amp;</b>]]>"},
    {L"<a><![CDATA[]]></a>", L"a <![CDATA[]]>"},
    {L"<a><![CDATA[]]]]></a>", L"a <![CDATA[]]]]>"},
    {L"<a><![CDATA[]]]></a>", L"a <![CDATA[]]]>"},
    {L"<a><![CDATA[]>]]></a>", L"a <![CDATA[]>]]>"},
    {L"<a><![CDATA[<![CDATA[]]></a>", L"a <![CDATA[<![CDATA[]]>"},
    {L"<a><![CDATA[1\r\n2\r3\r]]></a>", L"a <![CDATA[1\r\n2\r3\r]]>"},
    {L"<a>x<![CDATA[y]]>z</a>", L"a \"x\" \"z\" <![CDATA[y]]>"},
    {L"<a><!-- <b> &amp; & ]]> --></a>", L"a <!-- <b> &amp; & ]]> -->"},
    {L"<a><!----></a>", L"a <!---->"},
    {L"<a><!--->--></a>", L"a <!--->-->"},
    {L"<a><!-- - - --></a>", L"a <!-- - - -->"},
    {L"<a><!--1\r\n2\r3\n4\t--></a>", L"a <!--1\r\n2\r3\n4\t-->"},
    {L"<a><b><!--1--></b><!--2--></a>", L"a <!--2--> (b <!--1-->)"},
    {L"<a><PRE><b>&amp;&</c></PRE></a>", L"a <PRE><b>&amp;&</c></PRE>"},
    {L"<a><PRE></PRE></a>", L"a <PRE></PRE>"},
    {L"<a><PRE>1\r\n2\r3\n4\t</PRE></a>", L"a <PRE>1\r\n2\r3\n4\t</PRE>"},
    {L"<a><PRE><PRE></PRE></a>", L"a <PRE><PRE></PRE>"},
    {L"<a><PRE></PRE ></PRE></a>", L"a <PRE></PRE ></PRE>"},
    // Only exactly "<PRE>" opens the region.
    {L"<a><pre><b/></pre></a>", L"a (pre (b))"},
    {L"<a><PRE x=''><b/></PRE></a>", L"a (PRE @x='' (b))"},
    {L"<a><PRE ><b/></PRE></a>", L"a (PRE (b))"},
    {L"<a><PRE/><PREX/></a>", L"a (PRE) (PREX)"},
    // The top element has those that stand before and after it.
    {L"<!--1--><!--2--><a><!--3--><b/></a><!--4-->", L"a <!--1--> <!--2--> <!--3--> <!--4--> (b)"},
    {L"<!DOCTYPE a><a/>", L"a <!DOCTYPE a>"},
    {L"<!--1--><!DOCTYPE a><!--2--><a/>", L"a <!--1--> <!DOCTYPE a> <!--2-->"},
    {L"<!DOCTYPE a SYSTEM 'x>y'><a/>", L"a <!DOCTYPE a SYSTEM 'x>y'>"},
    {L"<!DOCTYPE a PUBLIC \"p\"\r\n'x' ><a/>", L"a <!DOCTYPE a PUBLIC \"p\"\r\n'x' >"},
    {L"<!DOCTYPE a []><a/>", L"a <!DOCTYPE a []>"},
    {L"<!DOCTYPE a[ ] ><a/>", L"a <!DOCTYPE a[ ] >"},
    {L"<!DOCTYPE a SYSTEM 's' [<!ELEMENT a ANY>]><a/>",
     L"a <!DOCTYPE a SYSTEM 's' [<!ELEMENT a ANY>]>"},
    {L"<!DOCTYPE a [<!ENTITY b ']>\"'><!--]>'--><?p ]>' ?>%c;\n]><a>&b;</a>",
     L"a \"&b;\" <!DOCTYPE a [<!ENTITY b ']>\"'><!--]>'--><?p ]>' ?>%c;\n]>"},
    {L"<!DOCTYPE a [<!ATTLIST a b (c|d) 'c'><!NOTATION n PUBLIC 'p'>]><a/>",
     L"a <!DOCTYPE a [<!ATTLIST a b (c|d) 'c'><!NOTATION n PUBLIC 'p'>]>"},
    // The DOCTYPE may name another element; that is a matter of validation.
    {L"<!DOCTYPE b><a/>", L"a <!DOCTYPE b>"},

    // What is skipped: the XML declaration, processing instructions, blanks outside the top
    // element.
    {L"<?xml version='1.0'?><a/>", L"a"},
    {L"<?xml version=\"1.1\" ?><a/>", L"a"},
    {L"<?xml version='1.0' encoding='UTF-8'?><a/>", L"a"},
    {L"<?xml version='1.0' encoding='x.Y_1-z' standalone='yes'?>\n<a/>", L"a"},
    {L"<?xml\tversion = '1.0'\r\nstandalone=\"no\"\n?><a/>", L"a"},
    {L"<?xml-stylesheet href='x'?><a/>", L"a"},
    {L"<?p?><a/><?p ?>", L"a"},
    {L"<?p <b> & ?? > ?><a/>", L"a"},
    {L"<?xmlx?><a/>", L"a"},
    {L" \t\r\n<a/> \t\r\n", L"a"},
    {L"<a><?p?></a>", L"a"},
};

TEST(XmlWellFormed, IsReadIntoItsTree) {
    for (const WellFormed& document : WellFormedDocuments) {
        SCOPED_TRACE(Printable(document.text));
        EXPECT_EQ(DescribeParsed(std::wstring(document.text)), document.tree);
    }
}

TEST(XmlWellFormed, StaysSoBetweenOtherContent) {
    for (const WellFormed& document : WellFormedDocuments) {
        // A declaration or a DOCTYPE cannot stand inside an element.
        if (document.text.starts_with(L"<?xml ") || document.text.starts_with(L"<?xml\t") ||
            document.text.find(L"<!DOCTYPE") != std::wstring_view::npos) {
            continue;
        }
        SCOPED_TRACE(Printable(document.text));
        const std::wstring tree =
            DescribeParsed(L"<outer>" + std::wstring(document.text) + L"</outer>");
        EXPECT_EQ(tree.substr(0, 5), L"outer");
        // Inside, comments around the element belong to the outer one.
        if (document.text.find(L"<!--1--><!--2-->") == std::wstring_view::npos) {
            EXPECT_NE(tree.find(L"(" + std::wstring(document.tree) + L")"), std::wstring::npos);
        }
    }
}

}  // namespace
}  // namespace tavro::xml
