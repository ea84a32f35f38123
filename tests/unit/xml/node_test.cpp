// Handles on nodes: lookups, and what a reference keeps alive.
#include "xml/node.h"

#include <gtest/gtest.h>

#include "unit/xml/helpers.h"
#include "xml/parser.h"

namespace tavro::xml {
namespace {

XmlNode Parse(std::wstring text) {
    XmlResults results;
    return ParseXmlText(std::move(text), results);
}

void ExpectEmpty(const XmlNode& node) {
    EXPECT_TRUE(node.IsEmpty());
    EXPECT_EQ(node, XmlNode());
    EXPECT_EQ(node.Name(), L"");
    EXPECT_EQ(node.ChildCount(), 0U);
    EXPECT_EQ(node.AttributeCount(), 0U);
    EXPECT_EQ(node.TextCount(), 0U);
    EXPECT_EQ(node.ClearItemCount(), 0U);
    EXPECT_FALSE(node.ValueAttribute().has_value());
    EXPECT_FALSE(node.Attribute(0).value.has_value());
    EXPECT_TRUE(node.Child(0).IsEmpty());
    EXPECT_TRUE(node.Parent().IsEmpty());
}

TEST(XmlNode, OfNothingIsTheEmptyNode) {
    ExpectEmpty(XmlNode());
}

TEST(XmlNode, LookupsInVainReturnTheEmptyNode) {
    const XmlNode top = Parse(L"<a x='1'>t<!--c--><b/></a>");
    ExpectEmpty(top.Child(1));
    ExpectEmpty(top.Child(static_cast<std::size_t>(-1)));
    ExpectEmpty(top.Parent());
    ExpectEmpty(top.Child(0).Child(0));
    ExpectEmpty(top.Child(7).Child(7).Child(7));
    EXPECT_EQ(top.Attribute(1).name, L"");
    EXPECT_FALSE(top.Attribute(1).value.has_value());
    EXPECT_EQ(top.Text(1), L"");
    EXPECT_EQ(top.ClearItem(1).text, L"");
    EXPECT_EQ(top.ClearItem(1).openingMarker, L"");
}

TEST(XmlNode, KnowsNameParentAndChildrenInOrder) {
    const XmlNode top = Parse(L"<a><b/>x<c><d/></c><b/></a>");
    ASSERT_EQ(top.ChildCount(), 3U);
    EXPECT_EQ(top.Child(0).Name(), L"b");
    EXPECT_EQ(top.Child(1).Name(), L"c");
    EXPECT_EQ(top.Child(2).Name(), L"b");
    EXPECT_NE(top.Child(0), top.Child(2));
    EXPECT_EQ(top.Child(0), top.Child(0));
    EXPECT_EQ(top.Child(1).Child(0).Parent(), top.Child(1));
    EXPECT_EQ(top.Child(1).Parent(), top);
}

TEST(XmlNode, ClearItemsComeWithTheirMarkers) {
    const XmlNode top = Parse(L"<!DOCTYPE a SYSTEM 's'><a><!--1--><![CDATA[2]]><PRE>3</PRE></a>");
    struct Expected {
        std::wstring_view opening, text, closing;
    };
    constexpr Expected Items[] = {{L"<!DOCTYPE", L" a SYSTEM 's'", L">"},
                                  {L"<!--", L"1", L"-->"},
                                  {L"<![CDATA[", L"2", L"]]>"},
                                  {L"<PRE>", L"3", L"</PRE>"}};
    ASSERT_EQ(top.ClearItemCount(), std::size(Items));
    for (std::size_t index = 0; index < std::size(Items); ++index) {
        const XmlClearItem item = top.ClearItem(index);
        EXPECT_EQ(item.openingMarker, Items[index].opening);
        EXPECT_EQ(item.text, Items[index].text);
        EXPECT_EQ(item.closingMarker, Items[index].closing);
    }
}

TEST(XmlNode, ValueAttributeIsFoundInAnyCase) {
    struct Case {
        std::wstring_view text;
        std::optional<std::wstring_view> value;
    };
    constexpr Case Cases[] = {
        {L"<a value='1'/>", L"1"},
        {L"<a VALUE='1'/>", L"1"},
        {L"<a Value='1'/>", L"1"},
        {L"<a vAlUe=''/>", L""},
        {L"<a VALUE='1' value='2'/>", L"1"},
        {L"<a x='0' Value='1' value='2'/>", L"1"},
        {L"<a/>", std::nullopt},
        {L"<a values='1' valu='2' _value='3' x:value='4'/>", std::nullopt},
        {L"<a V\u0430lue='1'/>", std::nullopt},
        {L"<value>1</value>", std::nullopt},
    };
    for (const Case& each : Cases) {
        EXPECT_EQ(Parse(std::wstring(each.text)).ValueAttribute(), each.value)
            << Printable(each.text);
    }
}

TEST(XmlNode, TextsAreFollowedByAZero) {
    const XmlNode top = Parse(L"<ab cd='ef&amp;'>gh&lt;\r\n<!--ij\r\n--></ab>");
    EXPECT_EQ(*top.Name().end(), L'\0');
    EXPECT_EQ(*top.Attribute(0).name.end(), L'\0');
    EXPECT_EQ(*top.ValueAttribute().value_or(L"x").end(), L'\0');
    EXPECT_EQ(*top.Text(0).end(), L'\0');
    EXPECT_EQ(*top.ClearItem(0).text.end(), L'\0');
}

TEST(XmlNode, CopiesKeepTheDocumentUntilTheLastIsReleased) {
    XmlNode first = Parse(L"<a v='long enough to stand outside of the string object'><b/></a>");
    XmlNode second = first;
    XmlNode third(second);
    EXPECT_EQ(first, third);
    first.Release();
    ExpectEmpty(first);
    second = XmlNode();
    ExpectEmpty(second);
    EXPECT_EQ(third.Name(), L"a");
    EXPECT_EQ(third.Child(0).Parent(), third);
    third.Release();
    third.Release();
    ExpectEmpty(third);
}

TEST(XmlNode, MovingLeavesTheEmptyNode) {
    XmlNode from = Parse(L"<a/>");
    XmlNode to(std::move(from));
    ExpectEmpty(from);  // NOLINT(bugprone-use-after-move): that is what is tested
    EXPECT_EQ(to.Name(), L"a");
    from = std::move(to);
    EXPECT_EQ(from.Name(), L"a");
}

TEST(XmlNode, AssigningFromWhatItOwnsIsSafe) {
    XmlNode node = Parse(L"<a><b><c/></b></a>");
    node = node.Child(0);
    EXPECT_EQ(node.Name(), L"b");
    ExpectEmpty(node.Parent());
    node = node.Child(0);
    EXPECT_EQ(node.Name(), L"c");
    ExpectEmpty(node.Parent());
    const XmlNode& same = node;
    node = same;
    EXPECT_EQ(node.Name(), L"c");
}

TEST(XmlNode, ReleasingAParentDetachesItsChildren) {
    XmlNode top = Parse(L"<a><b x='1'>t<c/></b><d/></a>");
    const XmlNode b = top.Child(0);
    const XmlNode d = top.Child(1);
    EXPECT_EQ(b.Parent(), top);
    top.Release();
    ExpectEmpty(b.Parent());
    ExpectEmpty(d.Parent());
    EXPECT_EQ(Describe(b), L"b @x='1' \"t\" (c)");
    EXPECT_EQ(b.Child(0).Parent(), b);
    EXPECT_EQ(d.Name(), L"d");
}

TEST(XmlNode, AParentWithAnotherHandleKeepsItsChildren) {
    XmlNode top = Parse(L"<a><b/></a>");
    const XmlNode again = top;
    const XmlNode b = top.Child(0);
    top.Release();
    EXPECT_EQ(b.Parent(), again);
}

TEST(XmlNode, AParentWithoutHandleLivesThroughItsOwnParent) {
    XmlNode top = Parse(L"<a><b><c><d/></c></b></a>");
    const XmlNode d = top.Child(0).Child(0).Child(0);
    // Nobody has a handle on b and c; the top element keeps them.
    EXPECT_EQ(d.Parent().Name(), L"c");
    EXPECT_EQ(d.Parent().Parent().Parent(), top);
    top.Release();
    ExpectEmpty(d.Parent());
    EXPECT_EQ(d.Name(), L"d");
}

TEST(XmlNode, ADetachedPartEndsLikeADocument) {
    XmlNode top = Parse(L"<a><b><c><d/></c><e/></b><f/></a>");
    XmlNode b = top.Child(0);
    const XmlNode d = b.Child(0).Child(0);
    const XmlNode e = b.Child(1);
    top.Release();
    EXPECT_EQ(e.Parent(), b);
    EXPECT_EQ(d.Parent().Parent(), b);
    b.Release();
    ExpectEmpty(e.Parent());
    ExpectEmpty(d.Parent());
}

TEST(XmlNode, DocumentsDoNotMix) {
    const XmlNode first = Parse(L"<a/>");
    const XmlNode second = Parse(L"<a/>");
    EXPECT_NE(first, second);
}

}  // namespace
}  // namespace tavro::xml
